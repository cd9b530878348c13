// The name finder: searches the timing netlist with one of the engine's
// collection commands, lists the matches (filtered as the pattern is typed),
// lets the user pick names, and hands back an SDC collection expression such
// as [get_keepers {a b}]. The search runs as hidden engine commands in pages,
// with a progress bar and a Cancel button between pages, and the list is
// capped (with a note) so that a huge design never freezes the window.
#pragma once

#include <QAbstractTableModel>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/lum_dialog_base.hh"
#include "dialogs/lum_name_finder_fields.hh"

class QComboBox;
class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTableView;

// A one-column list of names with a header text; an optional filter shows a
// subset. Rows are fetched by the view, never made one widget per name.
class LUM_NAME_LIST_MODEL : public QAbstractTableModel {
 public:
  explicit LUM_NAME_LIST_MODEL(QObject* parent) : QAbstractTableModel(parent) {}

  void set_names(std::vector<std::string> names);
  const std::vector<std::string>& get_names() const { return m_names; }
  // Shows only the names the glob pattern matches ("*" or empty: all).
  void set_filter(const std::string& pattern, bool no_case);
  // The names shown, in their order.
  std::vector<std::string> shown_names() const;
  const std::string& shown_name(int row) const;
  void set_header(const std::string& text);

  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<std::string> m_names;
  std::vector<int> m_shown;  // indices into m_names
  bool m_filtered = false;
  QString m_header;
};

class LUM_NAME_FINDER_DLG : public LUM_DIALOG_BASE {
  Q_OBJECT

 public:
  // collection_mask narrows the collection commands offered (bit 0
  // "get_cells" ... bit 7 "get_registers").
  explicit LUM_NAME_FINDER_DLG(QWidget* parent, std::uint8_t collection_mask = LUM_NAME_FINDER_FIELDS::ALL_COLLECTIONS);

  std::string get_sdc_expression() const { return m_fields.sdc_expression(); }
  LUM_NAME_FINDER_FIELDS& fields() { return m_fields; }

  // Where the hidden engine commands go; by default the frame's console.
  // Tests and the bench replace it.
  static void set_hidden_runner(LUM_NAME_FINDER_SEARCH::RUN_HIDDEN runner);
  void set_page_size(size_t page) { m_page = page; }
  void set_cap(size_t cap) { m_cap = cap; }

  // The operations behind the buttons.
  void on_click_list();
  void on_copy_one();
  void on_copy_all();
  void on_remove_one();
  void on_remove_all();
  void on_change_collection();
  void cancel_search() { m_cancel = true; }
  // Closing the dialog also ends a search in progress.
  void reject() override;
  bool is_searching() const { return m_searching; }

  LUM_NAME_LIST_MODEL* get_matches_model() const { return m_matches; }
  LUM_NAME_LIST_MODEL* get_selected_model() const { return m_selected; }
  QTableView* get_matches_view() const { return m_matches_view; }
  QTableView* get_selected_view() const { return m_selected_view; }
  QLabel* get_note_label() const { return m_note; }

 protected:
  std::string compose() const override { return m_fields.sdc_expression(); }
  void after_compose() override;
  // Ctrl+C in either list copies its selected rows (the list's own copy would
  // take only the current row).
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QTableView* make_list_view(LUM_NAME_LIST_MODEL* model, const char* object_name);
  void copy_selection_to_clipboard(QTableView* view) const;
  std::vector<int> selected_rows(QTableView* view) const;
  void show_searching(bool searching);

  LUM_NAME_FINDER_FIELDS m_fields;
  QComboBox* m_collection = nullptr;
  QCheckBox* m_hierarchical = nullptr;
  QCheckBox* m_compatibility = nullptr;
  QPushButton* m_list_button = nullptr;
  QPushButton* m_cancel_button = nullptr;
  QProgressBar* m_progress = nullptr;
  QLabel* m_note = nullptr;
  LUM_NAME_LIST_MODEL* m_matches = nullptr;
  LUM_NAME_LIST_MODEL* m_selected = nullptr;
  QTableView* m_matches_view = nullptr;
  QTableView* m_selected_view = nullptr;
  size_t m_page = LUM_NAME_FINDER_SEARCH::DEFAULT_PAGE;
  size_t m_cap = LUM_NAME_FINDER_SEARCH::DEFAULT_CAP;
  bool m_cancel = false;
  bool m_searching = false;
  // The filter last applied to the matches (refiltering only when it changes
  // keeps the user's selection in the list).
  std::string m_filter_pattern;
  bool m_filter_no_case = false;
};
