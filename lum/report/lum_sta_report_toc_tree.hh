// LUM_STA_REPORT_TOC_TREE: the report contents tree in the Report pane, the
// index of everything the engine wrote into the report database of the open
// project revision.
//
// The tree is thrown away and rebuilt from the database after every engine
// run that changes the report (load_sta_report). Its rows are kept in
// pre-order, so a row number is the position in the fully expanded tree; each
// row remembers its object's label, database path, kind icon and whether it
// is out of date (disabled in the database, below a disabled folder, or
// disabled wholesale by disable_all when constraints changed after the
// reports were made). Selecting a row opens its object as a page of the
// report view; selecting a folder opens the folder's first leaf.
//
// The context menu reloads, regenerates (re-runs the command that made the
// panel, which the database remembers), deletes panels through the engine
// command "delete_timing_report_panel" and exports a panel as text, HTML or
// XML. A tree that shows only the placeholder row "Report not available"
// does none of these.
#pragma once

#include "report/lum_report_icons.hh"

#include <QAbstractItemModel>
#include <QTreeView>

#include <string>
#include <vector>

class LUM_REPORT_VIEW;
class QMenu;
class RDB_FOLDER_OBJECT;
class RDB_OBJECT;
class RDB_REPORT;

// Asked before every panel of the report is deleted.
#define LUM_MSG_PROMPT_TO_DELETE_ALL_PANELS \
  "Every report panel will be deleted.  Do you want to continue?/YNLUM_PROMPT_TO_DELETE_ALL_PANELS"

// The placeholder row's label.
inline constexpr const char* LUM_REPORT_NOT_AVAILABLE = "Report not available";

struct LUM_TOC_ROW {
  std::string label;
  std::string rdb_path;
  // The command that made the row's panel (level-0 rows only; "" if unknown).
  std::string command;
  int level = 0;
  int parent = -1;    // row number of the parent, -1 at level 0
  int position = 0;   // index among the parent's children
  std::vector<int> children;
  LUM_TOC_ICON icon = LUM_TOC_ICON_DEFAULT;
  bool out_of_date = false;
  bool violated = false;  // a path object whose slack is violated
};

// The rows as a Qt item model (one column).
class LUM_TOC_MODEL : public QAbstractItemModel {
  Q_OBJECT

 public:
  explicit LUM_TOC_MODEL(QObject* parent = nullptr) : QAbstractItemModel(parent) {}

  void set_rows(std::vector<LUM_TOC_ROW> rows);
  const std::vector<LUM_TOC_ROW>& rows() const { return m_rows; }
  // Marks every row out of date.
  void disable_all();
  QModelIndex index_of_row(int row) const;
  int row_of(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = QModelIndex()) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = QModelIndex()) const override;
  int columnCount(const QModelIndex& parent = QModelIndex()) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

 private:
  std::vector<LUM_TOC_ROW> m_rows;
  std::vector<int> m_top;  // level-0 rows
};

enum class LUM_EXPORT_FORMAT { TEXT, HTML, XML };

// The object at a pre-order position below a report's main folder: every
// object counts (legal notices too), a folder before its children, the first
// child is position 0. Null when there are fewer objects. The folder
// overload continues a count kept in *counter.
RDB_OBJECT* lum_get_report_object(const RDB_REPORT* report, int position);
RDB_OBJECT* lum_get_report_object(const RDB_OBJECT* folder, int position, int* counter);

class LUM_STA_REPORT_TOC_TREE : public QTreeView {
  Q_OBJECT

 public:
  explicit LUM_STA_REPORT_TOC_TREE(QWidget* parent = nullptr);
  ~LUM_STA_REPORT_TOC_TREE() override;

  // Where selected rows open.
  void set_report_view(LUM_REPORT_VIEW* view) { m_report_view = view; }
  LUM_REPORT_VIEW* get_report_view() const { return m_report_view; }

  // Rebuilds the tree. Without reload, or without an open project, the
  // database is not read and the tree shows only the placeholder row. A
  // panel name (may be null) opens that panel once the tree is built.
  void load_sta_report(bool reload, const char* panel_name);

  bool has_report() const { return m_has_report; }
  int get_row_count() const { return static_cast<int>(m_model.rows().size()); }
  // Row data; empty / -1 outside the rows.
  std::string get_label(int index) const;
  std::string get_rdb_path(int index) const;
  int get_level(int index) const;
  int get_number_of_children(int index) const;

  // The first row whose label equals text exactly (and, unless level is -1,
  // whose level is level); -1 if none. *enabled tells whether it is current.
  int find_item(const std::string& text, bool* enabled = nullptr, int level = -1) const;
  // The same, matching the stored database path.
  int find_item_by_rdb_path(const std::string& path, bool* enabled = nullptr) const;
  // Shows, selects and opens a row; false (and nothing changed) outside the rows.
  bool open_item(int index);
  // The level-0 row (the panel) that holds a row; -1 outside the rows.
  int get_panel_row(int index) const;
  // The selected row, -1 when none.
  int get_selected_row() const;
  // Opens the selected row, or the first leaf below a selected folder.
  void on_selchange();
  bool is_out_of_date(int index) const;

  // Marks every row out of date when the netlist is not up to date and
  // constraints were applied since the reports were made, then re-opens
  // the report view's pages so that they show the watermark.
  void update_status();
  // Whether constraints were applied since the last SDC save (the frame's
  // m_sdc_needs_saving); remembered for update_status.
  void set_sdc_needs_saving(bool needs_saving) { m_sdc_needs_saving = needs_saving; }
  void disable_all();

  // Panels to open after the next rebuild: the first opens a level-0 row
  // (or the first entries below it), the second the row itself.
  void set_pending_open_name(const std::string& name) { m_pending_name = name; }
  void set_second_pending_open_name(const std::string& name) { m_second_pending_name = name; }

  // Sends "delete_timing_report_panel" for a row's panel; the tree changes
  // when the engine next reloads the report.
  void delete_panel(int index);
  // Context-menu commands.
  void on_panel_reload();
  void on_panel_regenerate();
  void on_panel_regenerate_all_out_of_date();
  void on_panel_delete();
  void on_panel_delete_all_out_of_date();
  void on_panel_delete_all();
  void on_export();
  bool can_regenerate() const;
  bool can_act_on_out_of_date() const;

  // Writes a row's object to a file with the export header. False with a
  // reason (naming the file) when the report or the file cannot be used.
  bool export_item(int index, const std::string& file, LUM_EXPORT_FORMAT format, std::string* error) const;

  // The context menu as it would pop up now (the caller owns it).
  QMenu* create_context_menu();

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  int build_folder(const RDB_OBJECT* folder, int level, int parent, const RDB_OBJECT* wanted, int* pending_index,
                   std::vector<LUM_TOC_ROW>* rows) const;
  void on_current_changed(const QModelIndex& current);
  void open_pending(std::string* name, bool first_entries);
  // Each level-0 row, in order.
  std::vector<int> top_rows() const;

  LUM_TOC_MODEL m_model;
  LUM_REPORT_VIEW* m_report_view = nullptr;
  bool m_has_report = false;
  bool m_sdc_needs_saving = false;
  bool m_selecting = false;
  bool m_keyboard_moving = false;
  std::string m_pending_name;
  std::string m_second_pending_name;
};
