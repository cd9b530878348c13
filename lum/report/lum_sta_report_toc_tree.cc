#include "report/lum_sta_report_toc_tree.hh"

#include "platform/cfg.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_render.hh"
#include "report/lum_report_commands.hh"
#include "report/lum_report_rules.hh"
#include "report/lum_report_view.hh"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPalette>

#include <fstream>
#include <unordered_map>

namespace {

const char* const TREE_REQUESTER = "LUM_STA_REPORT_TOC_TREE::load_sta_report";
const char* const EXPORT_REQUESTER = "LUM_STA_REPORT_TOC_TREE::on_export";
const char* const PRODUCT_NAME = "Chronel Timing Analyzer";

int report_type() { return cfg_is_on("lum_use_compiler_report") ? RDB_COMPILER_REPORT : RDB_TIMING_REPORT; }

}  // namespace

RDB_OBJECT* lum_get_report_object(const RDB_OBJECT* folder, int position, int* counter) {
  if (!folder || !counter) return nullptr;
  for (RDB_OBJECT* child : folder->get_children()) {
    if (!child) continue;
    if ((*counter)++ == position) return child;
    if (RDB_OBJECT* found = lum_get_report_object(child, position, counter)) return found;
  }
  return nullptr;
}

RDB_OBJECT* lum_get_report_object(const RDB_REPORT* report, int position) {
  int counter = 0;
  return report && position >= 0 ? lum_get_report_object(report->get_main_folder(), position, &counter) : nullptr;
}

// ---- model ----------------------------------------------------------------------

void LUM_TOC_MODEL::set_rows(std::vector<LUM_TOC_ROW> rows) {
  beginResetModel();
  m_rows = std::move(rows);
  m_top.clear();
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
    if (m_rows[i].parent >= 0) continue;
    m_rows[i].position = static_cast<int>(m_top.size());
    m_top.push_back(i);
  }
  endResetModel();
}

void LUM_TOC_MODEL::disable_all() {
  for (LUM_TOC_ROW& row : m_rows) row.out_of_date = true;
  // A change announcement spans the children of one parent only, and the
  // layout does not change, so every row is announced on its own.
  for (int i = 0; i < static_cast<int>(m_rows.size()); ++i) {
    const QModelIndex changed = index_of_row(i);
    emit dataChanged(changed, changed);
  }
}

QModelIndex LUM_TOC_MODEL::index_of_row(int row) const {
  if (row < 0 || row >= static_cast<int>(m_rows.size())) return QModelIndex();
  return createIndex(m_rows[row].position, 0, static_cast<quintptr>(row));
}

int LUM_TOC_MODEL::row_of(const QModelIndex& index) const {
  if (!index.isValid() || index.model() != this) return -1;
  return static_cast<int>(index.internalId());
}

QModelIndex LUM_TOC_MODEL::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0) return QModelIndex();
  if (!parent.isValid()) return row < static_cast<int>(m_top.size()) ? createIndex(row, 0, static_cast<quintptr>(m_top[row])) : QModelIndex();
  const LUM_TOC_ROW& p = m_rows[row_of(parent)];
  if (row >= static_cast<int>(p.children.size())) return QModelIndex();
  return createIndex(row, 0, static_cast<quintptr>(p.children[row]));
}

QModelIndex LUM_TOC_MODEL::parent(const QModelIndex& index) const {
  const int row = row_of(index);
  if (row < 0) return QModelIndex();
  return index_of_row(m_rows[row].parent);
}

int LUM_TOC_MODEL::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return static_cast<int>(m_top.size());
  if (parent.column() != 0) return 0;
  return static_cast<int>(m_rows[row_of(parent)].children.size());
}

int LUM_TOC_MODEL::columnCount(const QModelIndex&) const { return 1; }

QVariant LUM_TOC_MODEL::data(const QModelIndex& index, int role) const {
  const int r = row_of(index);
  if (r < 0) return QVariant();
  const LUM_TOC_ROW& row = m_rows[r];
  switch (role) {
    case Qt::DisplayRole:
      return QString::fromStdString(row.label);
    case Qt::ToolTipRole:
      return row.out_of_date ? QStringLiteral("%1 (out of date)").arg(QString::fromStdString(row.label))
                             : QString::fromStdString(row.label);
    case Qt::DecorationRole:
      return lum_toc_icon(row.icon, row.out_of_date);
    case Qt::ForegroundRole:
      if (row.out_of_date) return QPalette().color(QPalette::Disabled, QPalette::Text);
      if (row.violated) return QColor(Qt::red);
      return QVariant();
    default:
      return QVariant();
  }
}

// ---- tree -----------------------------------------------------------------------

LUM_STA_REPORT_TOC_TREE::LUM_STA_REPORT_TOC_TREE(QWidget* parent) : QTreeView(parent) {
  setModel(&m_model);
  setHeaderHidden(true);
  setRootIsDecorated(true);
  setUniformRowHeights(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current, const QModelIndex&) { on_current_changed(current); });
  // A click on the selected row opens it again when its page was closed.
  connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
    const int row = m_model.row_of(index);
    if (row < 0 || row != get_selected_row() || get_number_of_children(row) > 0 || !m_report_view) return;
    LUM_VIEW_CTRL* target = m_report_view->get_target_view_ctrl();
    if (target && (target->get_type() != LUM_VIEW_REPORT_PANEL || target->get_path() != get_rdb_path(row)))
      on_selchange();
  });
  load_sta_report(false, nullptr);
}

LUM_STA_REPORT_TOC_TREE::~LUM_STA_REPORT_TOC_TREE() { setModel(nullptr); }

int LUM_STA_REPORT_TOC_TREE::build_folder(const RDB_OBJECT* folder, int level, int parent, const RDB_OBJECT* wanted,
                                          int* pending_index, std::vector<LUM_TOC_ROW>* rows) const {
  int added = 0;
  for (const RDB_OBJECT* child : folder->get_children()) {
    if (!child || child->is_legal_notice()) continue;
    const int index = static_cast<int>(rows->size());
    LUM_TOC_ROW row;
    row.label = child->get_name();
    row.rdb_path = child->get_path(false);
    row.level = level;
    row.parent = parent;
    row.position = parent < 0 ? 0 : static_cast<int>((*rows)[parent].children.size());
    row.icon = lum_toc_icon_of(child);
    row.out_of_date = !child->is_enable() || (level > 0 && parent >= 0 && (*rows)[parent].out_of_date);
    if (child->get_type() == RDB_KIND_PATH) {
      auto* path_object = dynamic_cast<const RDB_PATH_OBJECT*>(child);
      row.violated = path_object && path_object->path_is_violated();
    }
    if (child == wanted) {
      *pending_index = index;
      msg_debug("Found RDB object to open at tree index %d", index);
    }
    if (parent >= 0) (*rows)[parent].children.push_back(index);
    rows->push_back(std::move(row));
    ++added;
    if (child->get_type() == RDB_KIND_FOLDER) added += build_folder(child, level + 1, index, wanted, pending_index, rows);
  }
  return added;
}

void LUM_STA_REPORT_TOC_TREE::load_sta_report(bool reload, const char* panel_name) {
  QApplication::setOverrideCursor(Qt::WaitCursor);
  setUpdatesEnabled(false);
  m_selecting = true;
  m_has_report = false;
  int pending_index = -1;
  std::vector<LUM_TOC_ROW> rows;

  DBMUI_MANAGER* dbmui_mgr = DBMUI_MANAGER::get_instance();
  if (reload && MSG_ASSERT(dbmui_mgr != nullptr, "lum_sta_report_toc_tree") && dbmui_mgr->has_project()) {
    const int type = report_type();
    dbmui_mgr->free_rdb_report(type, TREE_REQUESTER);
    RDB_REPORT* report = dbmui_mgr->get_rdb_report(type, TREE_REQUESTER);
    RDB_FOLDER_OBJECT* main_folder = report ? report->get_main_folder() : nullptr;
    if (main_folder && main_folder->get_type() == RDB_KIND_FOLDER) {
      const RDB_OBJECT* wanted = nullptr;
      if (panel_name && *panel_name) {
        msg_debug("Caller requests to open panel '%s'", panel_name);
        wanted = report->find_object(panel_name);
        if (wanted) msg_debug("Found RDB_OBJECT with RDB path '%s'", wanted->get_path(false).c_str());
      }
      build_folder(main_folder, 0, -1, wanted, &pending_index, &rows);
      // The command of each panel, for "regenerate".
      std::unordered_map<std::string, std::string> commands;
      for (const RDB_PANEL_INFO& panel : report->get_panels()) commands[panel.name] = panel.command;
      for (LUM_TOC_ROW& row : rows) {
        if (row.level != 0) continue;
        auto it = commands.find(row.label);
        if (it != commands.end()) row.command = it->second;
      }
    } else if (!report) {
      const std::string& error = dbmui_mgr->get_last_error();
      const std::string file = dbmui_mgr->get_report_file(type);
      // A project without reports has no database yet; that is only worth a
      // word when the engine has just said it wrote a panel.
      if (!error.empty())
        lum_report_warning("LUM-REPORT-1", "The report cannot be shown: " + error);
      else if (panel_name && *panel_name)
        lum_report_warning("LUM-REPORT-2", "The report cannot be shown: the report database \"" + file +
                                               "\" does not exist yet.");
    } else {
      lum_report_warning("LUM-REPORT-3", "The report cannot be shown: the report database \"" + report->get_file() +
                                             "\" has no main folder.");
    }
    if (report) dbmui_mgr->unget_rdb_report(type, TREE_REQUESTER);
  }

  m_has_report = !rows.empty();
  if (!m_has_report) {
    LUM_TOC_ROW placeholder;
    placeholder.label = LUM_REPORT_NOT_AVAILABLE;
    placeholder.icon = LUM_TOC_ICON_PLACEHOLDER;
    rows.push_back(std::move(placeholder));
  }
  m_model.set_rows(std::move(rows));
  setUpdatesEnabled(true);
  m_selecting = false;
  viewport()->update();
  QApplication::restoreOverrideCursor();

  if (m_has_report) update_status();
  open_pending(&m_pending_name, true);
  open_pending(&m_second_pending_name, false);
  if (pending_index >= 0) {
    msg_debug("Caller requests opening tree item %d", pending_index);
    open_item(pending_index);
  }
}

void LUM_STA_REPORT_TOC_TREE::open_pending(std::string* name, bool first_entries) {
  if (m_has_report && !name->empty()) {
    const int row = find_item(*name, nullptr, 0);
    if (row >= 0) {
      int target = row;
      if (first_entries) {
        const int children = get_number_of_children(row);
        if (children >= 2)
          target = row + 2;
        else if (children == 1)
          target = row + 1;
      }
      open_item(target);
    }
  }
  name->clear();
}

std::vector<int> LUM_STA_REPORT_TOC_TREE::top_rows() const {
  std::vector<int> top;
  if (!m_has_report) return top;
  const auto& rows = m_model.rows();
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    if (rows[i].parent < 0) top.push_back(i);
  }
  return top;
}

std::string LUM_STA_REPORT_TOC_TREE::get_label(int index) const {
  return index >= 0 && index < get_row_count() ? m_model.rows()[index].label : std::string();
}

std::string LUM_STA_REPORT_TOC_TREE::get_rdb_path(int index) const {
  return index >= 0 && index < get_row_count() ? m_model.rows()[index].rdb_path : std::string();
}

int LUM_STA_REPORT_TOC_TREE::get_level(int index) const {
  return index >= 0 && index < get_row_count() ? m_model.rows()[index].level : -1;
}

int LUM_STA_REPORT_TOC_TREE::get_number_of_children(int index) const {
  return index >= 0 && index < get_row_count() ? static_cast<int>(m_model.rows()[index].children.size()) : 0;
}

int LUM_STA_REPORT_TOC_TREE::find_item(const std::string& text, bool* enabled, int level) const {
  const auto& rows = m_model.rows();
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    if (rows[i].label != text || (level != -1 && rows[i].level != level)) continue;
    if (enabled) *enabled = !rows[i].out_of_date;
    return i;
  }
  return -1;
}

int LUM_STA_REPORT_TOC_TREE::find_item_by_rdb_path(const std::string& path, bool* enabled) const {
  const auto& rows = m_model.rows();
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    if (rows[i].rdb_path != path || rows[i].rdb_path.empty()) continue;
    if (enabled) *enabled = !rows[i].out_of_date;
    return i;
  }
  return -1;
}

bool LUM_STA_REPORT_TOC_TREE::is_out_of_date(int index) const {
  return index >= 0 && index < get_row_count() && m_model.rows()[index].out_of_date;
}

int LUM_STA_REPORT_TOC_TREE::get_selected_row() const { return m_model.row_of(currentIndex()); }

bool LUM_STA_REPORT_TOC_TREE::open_item(int index) {
  if (index < 0 || index >= get_row_count()) return false;
  const QModelIndex item = m_model.index_of_row(index);
  for (QModelIndex p = item.parent(); p.isValid(); p = p.parent()) expand(p);
  scrollTo(item);
  m_selecting = true;
  selectionModel()->setCurrentIndex(item, QItemSelectionModel::ClearAndSelect);
  m_selecting = false;
  on_selchange();
  return true;
}

void LUM_STA_REPORT_TOC_TREE::on_current_changed(const QModelIndex& current) {
  if (m_selecting || !current.isValid()) return;
  const int row = m_model.row_of(current);
  if (get_number_of_children(row) > 0) {
    // The keyboard may rest on a folder (so that it can move on above it);
    // Return opens the folder's first leaf.
    if (m_keyboard_moving) return;
    // A click on a folder opens its first leaf once the click has made its
    // own selection, so that the highlight and the caret end on the leaf.
    QMetaObject::invokeMethod(this, [this, row] {
      if (get_selected_row() == row) on_selchange();
    }, Qt::QueuedConnection);
    return;
  }
  on_selchange();
}

void LUM_STA_REPORT_TOC_TREE::keyPressEvent(QKeyEvent* event) {
  const int row = get_selected_row();
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && row >= 0) {
    on_selchange();
    event->accept();
    return;
  }
  m_keyboard_moving = true;
  QTreeView::keyPressEvent(event);
  m_keyboard_moving = false;
}

int LUM_STA_REPORT_TOC_TREE::get_panel_row(int index) const {
  if (index < 0 || index >= get_row_count()) return -1;
  while (m_model.rows()[index].parent >= 0) index = m_model.rows()[index].parent;
  return index;
}

void LUM_STA_REPORT_TOC_TREE::on_selchange() {
  int row = get_selected_row();
  if (row < 0) return;
  if (get_number_of_children(row) > 0) {
    // A folder is never opened itself; its first leaf is.
    int leaf = row;
    while (leaf + 1 < get_row_count() && get_number_of_children(leaf) > 0) ++leaf;
    open_item(leaf);
    return;
  }
  if (!m_has_report) return;
  if (!MSG_ASSERT(m_report_view != nullptr, "lum_sta_report_toc_tree")) return;
  LUM_VIEW_CTRL* view_ctrl = m_report_view->get_target_view_ctrl();
  if (!MSG_ASSERT(view_ctrl != nullptr, "lum_sta_report_toc_tree")) return;
  const std::string rdb_path = get_rdb_path(row);
  if (!MSG_ASSERT(!rdb_path.empty(), "lum_sta_report_toc_tree")) return;
  view_ctrl->open_page(LUM_VIEW_REPORT_PANEL, rdb_path);
}

void LUM_STA_REPORT_TOC_TREE::update_status() {
  if (lum_report_netlist_is_up_to_date() != '0' || !m_sdc_needs_saving) return;
  disable_all();
  if (m_report_view) m_report_view->refresh_all();
}

void LUM_STA_REPORT_TOC_TREE::disable_all() {
  if (!m_has_report) return;
  m_model.disable_all();
  viewport()->update();
}

void LUM_STA_REPORT_TOC_TREE::delete_panel(int index) {
  // Parts of a panel are not known to the engine: the panel is deleted.
  index = get_panel_row(index);
  if (!m_has_report || index < 0) return;
  lum_report_run_command(lum_delete_panel_command(lum_panel_name_from_rdb_path(get_rdb_path(index))));
}

void LUM_STA_REPORT_TOC_TREE::on_panel_reload() { on_selchange(); }

bool LUM_STA_REPORT_TOC_TREE::can_regenerate() const {
  int row = get_selected_row();
  if (!m_has_report || row < 0) return false;
  while (m_model.rows()[row].parent >= 0) row = m_model.rows()[row].parent;
  return !m_model.rows()[row].command.empty();
}

bool LUM_STA_REPORT_TOC_TREE::can_act_on_out_of_date() const {
  if (!m_has_report) return false;
  for (const LUM_TOC_ROW& row : m_model.rows()) {
    if (row.out_of_date) return true;
  }
  return false;
}

void LUM_STA_REPORT_TOC_TREE::on_panel_regenerate() {
  if (!can_regenerate()) return;
  int row = get_selected_row();
  while (m_model.rows()[row].parent >= 0) row = m_model.rows()[row].parent;
  // The engine calls back lum_reload_sta_report, which opens the panel again.
  set_second_pending_open_name(m_model.rows()[row].label);
  lum_report_run_stored_command(m_model.rows()[row].command);
}

void LUM_STA_REPORT_TOC_TREE::on_panel_regenerate_all_out_of_date() {
  if (!can_act_on_out_of_date()) return;
  // Reports are refused while the netlist is out of date: it is updated
  // first, and the panels are made after it, in the same run of the queue.
  if (lum_report_netlist_is_up_to_date() == '0') lum_report_run_command("update_timing_netlist");
  for (int row : top_rows()) {
    if (!is_out_of_date(row)) continue;
    const LUM_TOC_ROW& panel = m_model.rows()[row];
    if (panel.command.empty()) {
      lum_report_warning("LUM-REPORT-4", "The panel \"" + panel.label +
                                             "\" cannot be regenerated: the command that made it is not known.");
      continue;
    }
    lum_report_run_stored_command(panel.command);
  }
}

void LUM_STA_REPORT_TOC_TREE::on_panel_delete() {
  const int row = get_selected_row();
  if (m_has_report && row >= 0) delete_panel(row);
}

void LUM_STA_REPORT_TOC_TREE::on_panel_delete_all_out_of_date() {
  if (!can_act_on_out_of_date()) return;
  for (int row : top_rows()) {
    if (is_out_of_date(row)) delete_panel(row);
  }
}

void LUM_STA_REPORT_TOC_TREE::on_panel_delete_all() {
  if (!m_has_report) return;
  if (msg_show_catalogue_message(LUM_MSG_PROMPT_TO_DELETE_ALL_PANELS) != MSG_ANSWER_YES) return;
  for (int row : top_rows()) delete_panel(row);
}

bool LUM_STA_REPORT_TOC_TREE::export_item(int index, const std::string& file, LUM_EXPORT_FORMAT format,
                                          std::string* error) const {
  auto fail = [error](const std::string& message) {
    if (error) *error = message;
    return false;
  };
  if (!m_has_report || index < 0 || index >= get_row_count()) return fail("There is no panel to export.");
  DBMUI_MANAGER* dbmui_mgr = DBMUI_MANAGER::get_instance();
  if (!MSG_ASSERT(dbmui_mgr != nullptr, "lum_sta_report_toc_tree")) return fail("There is no report database.");
  const int type = report_type();
  RDB_REPORT* report = dbmui_mgr->get_rdb_report(type, EXPORT_REQUESTER);
  if (!report) return fail("The report cannot be read: " + dbmui_mgr->get_last_error());
  bool ok = true;
  const RDB_OBJECT* object = report->get_object_by_path(get_rdb_path(index));
  if (!object) {
    ok = fail("The panel \"" + get_label(index) + "\" is no longer in the report.");
  } else if (format == LUM_EXPORT_FORMAT::XML) {
    std::string xml_error;
    if (!rdb_write_xml_report(object, file, &xml_error)) ok = fail(xml_error);
  } else {
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    if (!out) {
      ok = fail("Cannot write the file \"" + file + "\".");
    } else {
      if (format == LUM_EXPORT_FORMAT::HTML) out << "<PRE>\n";
      out << report->get_legal_notice() << "\n"
          << PRODUCT_NAME << " " << gen_get_version() << "\n"
          << file << "\n"
          << QDateTime::currentDateTime().toString(Qt::TextDate).toStdString() << "\n";
      if (format == LUM_EXPORT_FORMAT::HTML) {
        out << "</PRE>\n";
        rdb_write_html(*object, out);
      } else {
        out << "\n";
        rdb_write_text(*object, out);
      }
      out.flush();
      if (!out) ok = fail("Writing the file \"" + file + "\" failed.");
    }
  }
  dbmui_mgr->unget_rdb_report(type, EXPORT_REQUESTER);
  return ok;
}

void LUM_STA_REPORT_TOC_TREE::on_export() {
  const int row = get_panel_row(get_selected_row());
  if (!m_has_report || row < 0) return;
  DBMUI_MANAGER* dbmui_mgr = DBMUI_MANAGER::get_instance();
  const std::string revision = dbmui_mgr ? dbmui_mgr->get_revision() : std::string();
  const std::string dir = dbmui_mgr ? dbmui_mgr->get_project_dir() : std::string();
  const QString proposal = QDir(QString::fromStdString(dir)).filePath(QString::fromStdString(lum_export_file_name(revision, get_label(row))));
  const QString text_filter = QStringLiteral("Text Report (*.rpt *.txt)");
  const QString html_filter = QStringLiteral("HTML (*.htm *.html)");
  const QString xml_filter = QStringLiteral("XML (*.xml)");
  QString filters = text_filter + ";;" + html_filter;
  if (cfg_is_on("lum_export_panel_to_xml")) filters += ";;" + xml_filter;
  QString selected = text_filter;
  const QString path = QFileDialog::getSaveFileName(this, QStringLiteral("Export As"), proposal, filters, &selected);
  if (path.isEmpty()) return;
  LUM_EXPORT_FORMAT format = LUM_EXPORT_FORMAT::TEXT;
  if (selected == html_filter || path.endsWith(".htm", Qt::CaseInsensitive) || path.endsWith(".html", Qt::CaseInsensitive))
    format = LUM_EXPORT_FORMAT::HTML;
  else if (selected == xml_filter)
    format = LUM_EXPORT_FORMAT::XML;
  std::string error;
  if (!export_item(row, path.toStdString(), format, &error))
    QMessageBox::warning(this, QStringLiteral("Export As"), QString::fromStdString(error));
}

QMenu* LUM_STA_REPORT_TOC_TREE::create_context_menu() {
  auto* menu = new QMenu(this);
  auto add = [menu, this](const char* name, const QString& text, void (LUM_STA_REPORT_TOC_TREE::*handler)(), bool enabled) {
    QAction* action = menu->addAction(text, this, handler);
    action->setObjectName(QString::fromLatin1(name));
    action->setEnabled(enabled);
    return action;
  };
  const bool out_of_date = can_act_on_out_of_date();
  add("reload", QStringLiteral("&Reload"), &LUM_STA_REPORT_TOC_TREE::on_panel_reload, true);
  add("regenerate", QStringLiteral("Re&generate"), &LUM_STA_REPORT_TOC_TREE::on_panel_regenerate, can_regenerate());
  add("regenerate_all_out_of_date", QStringLiteral("Regenerate All &Out of Date"),
      &LUM_STA_REPORT_TOC_TREE::on_panel_regenerate_all_out_of_date, out_of_date);
  menu->addSeparator();
  add("delete", QStringLiteral("&Delete"), &LUM_STA_REPORT_TOC_TREE::on_panel_delete, true);
  add("delete_all_out_of_date", QStringLiteral("Delete All Out of Da&te"),
      &LUM_STA_REPORT_TOC_TREE::on_panel_delete_all_out_of_date, out_of_date);
  add("delete_all", QStringLiteral("Delete &All"), &LUM_STA_REPORT_TOC_TREE::on_panel_delete_all, m_has_report);
  menu->addSeparator();
  add("export", QStringLiteral("&Export..."), &LUM_STA_REPORT_TOC_TREE::on_export, true);
  return menu;
}

void LUM_STA_REPORT_TOC_TREE::contextMenuEvent(QContextMenuEvent* event) {
  if (!m_has_report) return;
  const QModelIndex hit = indexAt(viewport()->mapFromGlobal(event->globalPos()));
  if (!hit.isValid()) return;
  // The menu acts on the selected row: a right click selects (and opens) it first.
  if (hit != currentIndex()) open_item(m_model.row_of(hit));
  QMenu* menu = create_context_menu();
  menu->exec(event->globalPos());
  delete menu;
}
