// LUM_TABLE: the grid that shows one report object of the database (a table,
// a plain-text report or an embedded text file), and LUM_CENTERED_TABLE, the
// window that keeps a table of its ideal size centred.
//
// The grid is a QTableView over a LUM_TABLE_MODEL, so rows are read from the
// database only as they are shown. A click on a column title sorts by that
// column with the number-aware comparison (a second click on the same title
// reverses the order); the context menu copies, selects all, undoes the
// sort, exports the table as CSV and, for tables that carry command
// templates, runs a command for every selected row.
#pragma once

#include "report/lum_table_model.hh"

#include <QTableView>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QMenu;
class QPainter;
class QRect;
class RDB_OBJECT;
class RDB_TCL_TABLE_OBJECT;

// One command template of a table, offered on the context menu. The command
// text of a row is filled from the database when the command runs, so a
// table of a million rows keeps no million strings.
struct LUM_TABLE_TCL_CMD {
  std::string label;
  int index = 0;
};

// The rows of a copy: the texts of a row's cells in display order and which
// of them are selected.
struct LUM_COPY_ROW {
  std::vector<std::string> cells;
  std::vector<bool> selected;
};

// The clipboard text of a selection: for each row, its selected cells in
// display order; in whole-row mode (more than one column, and the first row
// selected from its first to its last cell) a tab follows each cell but the
// last column's; rows are separated by "\r\n", with none after the last.
std::string lum_compose_copy_text(const std::vector<LUM_COPY_ROW>& rows);

// One CSV record (RFC 4180): fields quoted when they hold a comma, a quote or
// a line break, quotes doubled; ended by "\r\n".
std::string lum_csv_record(const std::vector<std::string>& fields);

class LUM_TABLE : public QTableView {
  Q_OBJECT

 public:
  // The most commands a context menu offers.
  static constexpr int MAX_MENU_COMMANDS = 99;

  explicit LUM_TABLE(QWidget* parent = nullptr);
  ~LUM_TABLE() override;

  // Fill the grid from a database object; false when the object is not of
  // the right class (an internal error) or, for texts, when there are no rows.
  bool load_rdb_table(RDB_OBJECT* object);
  bool load_rdb_text(RDB_OBJECT* object);
  bool load_rdb_embedded_text(RDB_OBJECT* object);
  // Fill the grid from any source: titled tables show a header with sort
  // buttons, the grid and row numbers; untitled ones show bare rows.
  void load_source(std::unique_ptr<LUM_TABLE_SOURCE> source, bool titled);

  LUM_TABLE_MODEL* get_model() { return &m_model; }
  const LUM_TABLE_MODEL* get_model() const { return &m_model; }

  // Adds pixels to every column.
  void widen_all_columns(int pixels);
  // The size that shows every row and column without scroll bars.
  QSize get_ideal_size() const;

  // The out-of-date watermark behind the cells.
  void set_out_of_date(bool out_of_date);
  bool is_out_of_date() const { return m_out_of_date; }

  // Sorting (the header's click handler): a new column sorts ascending, the
  // same column again flips the direction. The caret's row stays in view.
  void on_sort(int column);
  void undo_sort();

  // Clipboard and selection.
  std::string copy_text() const;
  void on_edit_copy();
  void on_edit_select_all();

  // Writes the table as shown (column titles, then every row in the shown
  // order) as CSV. False with a reason when the file cannot be written.
  bool export_csv(const QString& path, QString* error) const;

  // Command templates (kind-12 tables).
  const std::vector<LUM_TABLE_TCL_CMD>& get_tcl_commands() const { return m_tcl_commands; }
  // The command lines of command `command` for the selected rows, in
  // selection order.
  std::vector<std::string> commands_for_selection(int command) const;
  // Routes one command line (lum_report_run_command). The context menu's
  // row commands, which come from the database, go through
  // lum_report_run_stored_command instead.
  void run_command(const std::string& command);

  // What a row stands for, opened by a double click on the row and by the
  // first entry of the context menu (labelled `label`); the function gets
  // the row's database row index. An empty function takes the opener away.
  using ROW_OPENER = std::function<void(int64_t database_row)>;
  void set_row_opener(const QString& label, ROW_OPENER opener);
  bool has_row_opener() const { return static_cast<bool>(m_row_opener); }
  // Opens a view row with the row opener; false when there is none.
  bool open_row(int view_row);

  // The context menu as it would pop up now (the caller owns it).
  QMenu* create_context_menu();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  // Texts and embedded files: one untitled, fixed-pitch column named title;
  // false when there are no rows.
  bool load_text_rows(const std::string& title, std::vector<RDB_TABLE_ROW> rows);
  // The selected view rows in selection order (each once).
  std::vector<int> selected_rows() const;
  void fit_columns(int extra_pixels);
  void on_sort_started();
  // The busy cursor while a sort runs (set at most once).
  void set_busy_cursor(bool busy);
  void on_sort_finished();
  void export_csv_interactive();

  LUM_TABLE_MODEL m_model;
  const RDB_TCL_TABLE_OBJECT* m_tcl_table = nullptr;
  std::vector<LUM_TABLE_TCL_CMD> m_tcl_commands;
  bool m_out_of_date = false;
  bool m_titled = true;
  bool m_busy_cursor = false;
  QString m_row_opener_label;
  ROW_OPENER m_row_opener;
};

// Keeps a table at its ideal size (never larger than the window) and centred.
class LUM_CENTERED_TABLE : public QWidget {
  Q_OBJECT

 public:
  explicit LUM_CENTERED_TABLE(QWidget* parent = nullptr);
  LUM_TABLE* get_table() { return m_table; }
  // Sizes and centres the table again (after its contents changed).
  void relayout();

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  LUM_TABLE* m_table;
};

// Tiles the out-of-date watermark over a rectangle (tables, path panels and
// charts paint it behind their contents).
void lum_tile_out_of_date_watermark(QPainter* painter, const QRect& rect);
