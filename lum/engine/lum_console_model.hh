// The console's rows as a Qt list model, so that the console logic runs and is
// tested without a screen and a view shows it (LUM_CONSOLE_VIEW).
//
// A row is a prompt (the command typed at it follows as its text), a
// continuation prompt, a line of engine text, or a message row; a message's
// sub-messages follow it as rows one level deeper each. Rows are compact: the
// texts of all rows live in one growing character arena and a row holds an
// offset and a length into it (24 bytes per row besides its text), because a
// busy engine can print millions of lines into one session.
#pragma once

#include <QAbstractListModel>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lum_kro_output_line.hh"
#include "platform/msg.hh"

class LUM_CONSOLE_MODEL : public QAbstractListModel {
  Q_OBJECT

 public:
  // Roles beyond Qt::DisplayRole (the row text as a QString).
  enum ROLE {
    TYPE_ROLE = Qt::UserRole + 1,  // int: LUM_KRO_OUTPUT_TYPE_ENUM
    KIND_ROLE,                     // int: MSG_KIND of a message row, -1 otherwise
    LEVEL_ROLE,                    // int: 0 for top rows, +1 per sub-message level
    MESSAGE_ROLE,                  // int: index of the row's message (get_message), -1 if none
  };

  explicit LUM_CONSOLE_MODEL(QObject* parent = nullptr);
  ~LUM_CONSOLE_MODEL() override;

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

  // Plain C++ access (no QString made).
  int row_count() const { return static_cast<int>(m_rows.size()); }
  std::string_view row_text(int row) const;
  LUM_KRO_OUTPUT_TYPE_ENUM row_type(int row) const;
  int row_level(int row) const;
  // MSG_KIND of a message row as int, -1 for other rows.
  int row_kind(int row) const;
  // The message a message row (or a sub-message row) shows, or null. For a
  // sub-message row this is the sub-message itself.
  const MSG_POST* row_message(int row) const;

  // Appending rows. Each returns the new row's index. Tabs in texts become
  // four blanks "    ". Appends are batched: begin_append()/end_append()
  // around many appends emit one rowsInserted for all of them.
  int add_prompt_row(LUM_KRO_OUTPUT_TYPE_ENUM type);
  int add_text_row(std::string_view text);
  // One text row per piece of text between line feeds; returns the last.
  int add_text_rows(std::string_view text);
  // A message row and its sub-messages, recursively one level deeper; returns
  // the message row.
  int insert_message(const MSG_POST* post, int level = 0);
  void begin_append();
  void end_append();

  // Replaces the text of a row (used to write a started command into its prompt row).
  void set_row_text(int row, std::string_view text);

  // Removes every row.
  void clear();

  // Bytes used per row on average, texts and messages included (for the bench).
  double bytes_per_row() const;

  // The text shown for a message: "Warning (VSTA-1203): text".
  static std::string message_row_text(const MSG_POST& post);

 private:
  struct ROW {
    uint64_t text_offset;
    uint32_t text_length;
    int32_t message;  // index into m_messages, -1 if none
    uint8_t type;
    int8_t kind;
    uint16_t level;
  };
  int append_row(LUM_KRO_OUTPUT_TYPE_ENUM type, std::string_view text, int kind, int level, int message);
  uint64_t store_text(std::string_view text, uint32_t* length);
  void announce_rows();

  std::vector<ROW> m_rows;
  std::string m_arena;
  // Messages of message rows; a sub-message row points into its parent's copy.
  std::vector<std::shared_ptr<const MSG_POST>> m_message_owners;
  std::vector<const MSG_POST*> m_messages;
  int m_batch_depth = 0;
  // Rows the views know of; rows appended inside a batch are announced at its end.
  int m_announced_rows = 0;
};
