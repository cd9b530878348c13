#include "report/lum_view_ctrl.hh"

#include "charts/lum_chart_wnd.hh"
#include "charts/lum_histogram_wnd.hh"
#include "platform/cfg.hh"
#include "platform/msg.hh"
#include "rdb/rdb_manager.hh"
#include "rdb/rdb_object.hh"
#include "rdb/rdb_report.hh"
#include "report/lum_chart_commands.hh"
#include "report/lum_path_wnd.hh"
#include "report/lum_report_commands.hh"
#include "report/lum_report_view.hh"
#include "report/lum_sta_report_toc_tree.hh"
#include "report/lum_table.hh"

#include <QContextMenuEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QSplitter>
#include <QDesktopServices>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

LUM_VIEW_CTRL::TASKS_PANE_FACTORY& tasks_pane_factory() {
  static LUM_VIEW_CTRL::TASKS_PANE_FACTORY factory;
  return factory;
}

// The path objects that the rows of a table of path summaries stand for:
// the paths beside the table in its folder, the n-th path for data row n.
// Empty when the table has no such siblings.
std::vector<const RDB_PATH_OBJECT*> summarised_paths(const RDB_OBJECT* table) {
  std::vector<const RDB_PATH_OBJECT*> paths;
  const RDB_OBJECT* folder = table ? table->get_parent() : nullptr;
  if (!folder || folder->get_type() != RDB_KIND_FOLDER) return paths;
  for (const RDB_OBJECT* child : folder->get_children()) {
    if (child && child->get_type() == RDB_KIND_PATH) paths.push_back(static_cast<const RDB_PATH_OBJECT*>(child));
  }
  return paths;
}

QWidget* make_message_page(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setObjectName(QStringLiteral("lum_message_page"));
  return label;
}

}  // namespace

namespace {
LUM_VIEW_CTRL::LINK_HANDLER& link_handler() {
  static LUM_VIEW_CTRL::LINK_HANDLER handler;
  return handler;
}
}  // namespace

void LUM_VIEW_CTRL::set_link_handler(LINK_HANDLER handler) { link_handler() = std::move(handler); }

void LUM_VIEW_CTRL::set_tasks_pane_factory(TASKS_PANE_FACTORY factory) { tasks_pane_factory() = std::move(factory); }

LUM_VIEW_CTRL::LUM_VIEW_CTRL(LUM_REPORT_VIEW* view, QWidget* parent)
    : QFrame(parent), m_view(view), m_layout(new QVBoxLayout(this)), m_caption(new QLabel(this)),
      m_placeholder(new QLabel(QString::fromLatin1(LUM_DATA_NOT_AVAILABLE), this)) {
  m_layout->setContentsMargins(0, 0, 0, 0);
  m_layout->setSpacing(0);
  m_caption->setObjectName(QStringLiteral("lum_view_caption"));
  m_caption->setContentsMargins(6, 3, 6, 3);
  m_caption->setAutoFillBackground(true);
  m_caption->setBackgroundRole(QPalette::Mid);
  m_caption->setForegroundRole(QPalette::BrightText);
  QFont caption_font = m_caption->font();
  caption_font.setBold(true);
  m_caption->setFont(caption_font);
  m_caption->setToolTip(QStringLiteral("Right-click to split"));
  m_placeholder->setAlignment(Qt::AlignCenter);
  m_placeholder->setObjectName(QStringLiteral("lum_data_not_available"));
  m_layout->addWidget(m_caption);
  m_layout->addWidget(m_placeholder, 1);
  LUM_CHART_CANVAS::set_out_of_date_painter(lum_tile_out_of_date_watermark);
  setFocusPolicy(Qt::ClickFocus);
  set_title(QString::fromLatin1(LUM_DATA_NOT_AVAILABLE));
  if (m_view) m_view->register_view_ctrl(this);
}

LUM_VIEW_CTRL::~LUM_VIEW_CTRL() {
  if (m_view) m_view->unregister_view_ctrl(this);
}

QString LUM_VIEW_CTRL::get_title() const { return m_caption->text(); }

void LUM_VIEW_CTRL::set_title(const QString& title) {
  m_caption->setText(title);
  setWindowTitle(title);
}

LUM_VIEW_CTRL* LUM_VIEW_CTRL::get_parent_ctrl() const {
  for (QWidget* w = parentWidget(); w; w = w->parentWidget()) {
    if (auto* ctrl = qobject_cast<LUM_VIEW_CTRL*>(w)) return ctrl;
    if (qobject_cast<LUM_REPORT_VIEW*>(w)) return nullptr;
  }
  return nullptr;
}

bool LUM_VIEW_CTRL::contains(const LUM_VIEW_CTRL* ctrl) const {
  for (const LUM_VIEW_CTRL* c = ctrl; c; c = c->get_parent_ctrl()) {
    if (c == this) return true;
  }
  return false;
}

void LUM_VIEW_CTRL::set_page(QWidget* page) {
  m_page = page;
  m_placeholder->setVisible(page == nullptr && !is_split());
  if (page) {
    m_layout->addWidget(page, 1);
    page->show();
  }
}

void LUM_VIEW_CTRL::close_page() {
  set_title(QString::fromLatin1(LUM_DATA_NOT_AVAILABLE));
  if (m_page) {
    m_page->hide();
    delete m_page;
    m_page = nullptr;
  }
  m_type = LUM_VIEW_NONE;
  m_path.clear();
  m_out_of_date = false;
  m_report.reset();
  m_placeholder->setVisible(!is_split());
}

void LUM_VIEW_CTRL::open_page(LUM_VIEW_TYPE_ENUM type, const std::string& path) {
  // The arguments may be this control's own members; keep copies.
  const std::string page_path = path;
  close_page();
  if (is_split() || page_path.empty()) return;
  switch (type) {
    case LUM_VIEW_REPORT_PANEL:
      open_report_panel(page_path);
      break;
    case LUM_VIEW_WEB_PAGE: {
      auto* browser = new QTextBrowser(this);
      browser->setOpenLinks(false);
      connect(browser, &QTextBrowser::anchorClicked, browser, [browser](const QUrl& link) {
        if (link_handler() && link_handler()(link.toString().toStdString())) return;
        if (link.scheme() == "http" || link.scheme() == "https" || link.scheme() == "mailto")
          QDesktopServices::openUrl(link);
        else
          browser->setSource(link);
      });
      browser->clear();  // a blank page until the document is shown
      const QString target = QString::fromStdString(page_path);
      // A file path may end in "#anchor" (a place in the page).
      QString file = target;
      QString anchor;
      const int hash = target.lastIndexOf('#');
      if (hash > 0 && QFileInfo(target.left(hash)).isFile()) {
        file = target.left(hash);
        anchor = target.mid(hash + 1);
      }
      QUrl url = QFileInfo(file).isAbsolute() ? QUrl::fromLocalFile(file) : QUrl(file);
      if (!anchor.isEmpty()) url.setFragment(anchor);
      browser->setSource(url);
      m_type = type;
      m_path = page_path;
      // A page with a title is shown by it rather than by its path.
      set_title(browser->documentTitle().isEmpty() ? target : browser->documentTitle());
      connect(browser, &QTextBrowser::sourceChanged, this, [this, browser] {
        if (!browser->documentTitle().isEmpty()) set_title(browser->documentTitle());
      });
      set_page(browser);
      break;
    }
    case LUM_VIEW_TASKS_PANE: {
      QWidget* pane = tasks_pane_factory() ? tasks_pane_factory()(this) : nullptr;
      if (!pane) pane = make_message_page(QStringLiteral("The tasks pane is not available."), this);
      m_type = type;
      m_path = page_path;
      set_title(QString::fromStdString(page_path));
      set_page(pane);
      break;
    }
    case LUM_VIEW_NONE:
      break;
  }
}

void LUM_VIEW_CTRL::open_report_panel(const std::string& path) {
  bool enabled = true;
  if (LUM_STA_REPORT_TOC_TREE* tree = m_view ? m_view->get_report_tree() : nullptr) {
    if (tree->find_item_by_rdb_path(path, &enabled) < 0) enabled = true;
  }
  const int report_type = cfg_is_on("lum_use_compiler_report") ? RDB_COMPILER_REPORT : RDB_TIMING_REPORT;
  DBMUI_MANAGER* dbmui_mgr = DBMUI_MANAGER::get_instance();
  if (!MSG_ASSERT(dbmui_mgr != nullptr, "lum_view_ctrl")) return;
  std::shared_ptr<RDB_REPORT> report = dbmui_mgr->share_rdb_report(report_type, "LUM_VIEW_CTRL::open_page");
  RDB_OBJECT* object = report ? report->get_object_by_path(path) : nullptr;
  // An object that is no longer in the report leaves the page closed.
  if (!object) return;
  m_report = report;
  m_type = LUM_VIEW_REPORT_PANEL;
  m_path = path;
  m_out_of_date = !enabled;
  set_title(QString::fromStdString(object->get_name()));
  QWidget* viewer = create_viewer(object, m_out_of_date);
  if (!viewer)
    viewer = make_message_page(QStringLiteral("\"%1\" has no viewer.").arg(QString::fromStdString(object->get_name())), this);
  set_page(viewer);
}

QWidget* LUM_VIEW_CTRL::create_viewer(RDB_OBJECT* object, bool out_of_date) {
  const int kind = object->get_type();
  switch (kind) {
    case RDB_KIND_TEXT: {
      auto* text_object = dynamic_cast<RDB_TEXT_OBJECT*>(object);
      if (!MSG_ASSERT(text_object != nullptr, "lum_view_ctrl")) return nullptr;
      if (text_object->is_html()) {
        auto* browser = new QTextBrowser(this);
        browser->setHtml(QString::fromStdString(text_object->get_text()));
        return browser;
      }
      auto* table = new LUM_TABLE(this);
      table->load_rdb_text(object);
      table->set_out_of_date(out_of_date);
      return table;
    }
    case RDB_KIND_TABLE:
    case RDB_KIND_DETAIL_TABLE:
    case RDB_KIND_TCL_TABLE: {
      // A table without rows says why, as the text form of the report does.
      auto* table_object = dynamic_cast<RDB_TABLE_OBJECT*>(object);
      if (table_object && table_object->get_number_of_data_rows() == 0) {
        std::string command;
        const std::string panel = lum_panel_name_from_rdb_path(m_path);
        for (const RDB_PANEL_INFO& info : m_report ? m_report->get_panels() : std::vector<RDB_PANEL_INFO>()) {
          if (info.name == panel.substr(0, panel.find("||"))) command = info.command;
        }
        return make_message_page(QStringLiteral("%1\n\n%2").arg(QString::fromStdString(object->get_name()),
                                                                 QString::fromStdString(lum_empty_table_reason(command))),
                                 this);
      }
      auto* host = new LUM_CENTERED_TABLE(this);
      host->get_table()->load_rdb_table(object);
      host->get_table()->set_out_of_date(out_of_date);
      if (!summarised_paths(object).empty()) {
        const std::string table_path = object->get_path(false);
        host->get_table()->set_row_opener(QStringLiteral("Show Path"), [this, table_path](int64_t database_row) {
          open_summarised_path(table_path, database_row);
        });
      }
      return host;
    }
    case RDB_KIND_HEADERLESS_TABLE: {
      auto* table = new LUM_TABLE(this);
      table->load_rdb_table(object);
      table->set_out_of_date(out_of_date);
      return table;
    }
    case RDB_KIND_CHART_TABLE: {
      auto* chart = new LUM_CHART_WND(this);
      chart->load_rdb_chart(object);
      chart->set_out_of_date(out_of_date);
      return chart;
    }
    case RDB_KIND_HISTOGRAM: {
      auto* histogram = new LUM_HISTOGRAM_WND(this);
      histogram->load_rdb_histogram(object);
      histogram->set_out_of_date(out_of_date);
      const std::string panel = object->get_panel_name();
      connect(histogram, &LUM_HISTOGRAM_WND::bins_clicked, this, [this, histogram, panel](int first, int last) {
        report_slack_range(histogram->get_data(), panel, first, last);
      });
      return histogram;
    }
    case RDB_KIND_PATH: {
      auto* path = new LUM_PATH_WND(this);
      path->load_rdb_path(object);
      path->set_out_of_date(out_of_date);
      return path;
    }
    case RDB_KIND_EMBEDDED: {
      auto* embedded_object = dynamic_cast<RDB_EMBEDDED_OBJECT*>(object);
      if (!MSG_ASSERT(embedded_object != nullptr, "lum_view_ctrl")) return nullptr;
      if (embedded_object->get_embedded_type() != 9) {
        auto* table = new LUM_TABLE(this);
        table->load_rdb_embedded_text(object);
        table->set_out_of_date(out_of_date);
        return table;
      }
      break;
    }
    default:
      break;
  }
  return nullptr;
}

void LUM_VIEW_CTRL::open_summarised_path(const std::string& table_path, int64_t database_row) {
  RDB_OBJECT* table = m_report ? m_report->get_object_by_path(table_path) : nullptr;
  const std::vector<const RDB_PATH_OBJECT*> paths = summarised_paths(table);
  // Data rows of a titled table start at database row 1.
  if (database_row < 1 || database_row > static_cast<int64_t>(paths.size())) return;
  const std::string path = paths[static_cast<size_t>(database_row - 1)]->get_path(false);
  // The table that asked is part of the page about to be replaced: open
  // the path once its click has been handled.
  QMetaObject::invokeMethod(
      this,
      [this, path] {
        LUM_STA_REPORT_TOC_TREE* tree = m_view ? m_view->get_report_tree() : nullptr;
        const int row = tree ? tree->find_item_by_rdb_path(path) : -1;
        if (row >= 0 && m_view->get_target_view_ctrl() == this) {
          tree->open_item(row);  // selects the path in the tree as well
        } else {
          open_page(LUM_VIEW_REPORT_PANEL, path);
        }
      },
      Qt::QueuedConnection);
}

void LUM_VIEW_CTRL::report_slack_range(const LUM_HISTOGRAM_DATA& data, const std::string& panel, int first,
                                       int last) {
  if (first < 0 || last < first || last >= static_cast<int>(data.bins.size())) return;
  LUM_SLACK_RANGE range;
  range.from = data.bins[static_cast<size_t>(first)].from;
  range.to = data.bins[static_cast<size_t>(last)].to;
  range.to_inclusive = last + 1 == static_cast<int>(data.bins.size());
  range.unit = data.unit;
  for (int i = first; i <= last; ++i) range.count += data.bins[static_cast<size_t>(i)].count;
  const std::string histogram_command = m_report ? m_report->get_panel_command(panel) : std::string();
  std::string why;
  const std::string command = lum_slack_range_command(histogram_command, range, &why);
  if (command.empty()) {
    lum_report_warning("LUM-REPORT-4", "No paths are reported for this bar: " + why + ".");
    return;
  }
  lum_report_run_command(command);
}

void LUM_VIEW_CTRL::refresh() {
  if (!is_split()) {
    open_page(m_type, m_path);
    return;
  }
  for (LUM_VIEW_CTRL* pane : m_panes) pane->refresh();
}

void LUM_VIEW_CTRL::clone(const LUM_VIEW_CTRL& other) {
  const LUM_VIEW_TYPE_ENUM type = other.m_type;
  const std::string path = other.m_path;
  open_page(type, path);
}

void LUM_VIEW_CTRL::split(LUM_SPLIT_ENUM mode) {
  m_positions = lum_split_positions(mode, width(), height());
  do_split();
}

LUM_VIEW_CTRL* LUM_VIEW_CTRL::add_pane(QSplitter* splitter) {
  auto* pane = new LUM_VIEW_CTRL(m_view, splitter);
  splitter->addWidget(pane);
  m_panes.push_back(pane);
  return pane;
}

void LUM_VIEW_CTRL::remove_panes() {
  std::vector<LUM_VIEW_CTRL*> panes;
  panes.swap(m_panes);
  if (m_splitter) {
    m_splitter->hide();
    delete m_splitter;  // deletes the panes with it
    m_splitter = nullptr;
  }
}

void LUM_VIEW_CTRL::do_split() {
  const int wanted = lum_split_pane_count(m_positions);
  // The page that survives any change of the split: the active control's
  // when it lies inside this one, else this control's (or its first pane's).
  const LUM_VIEW_CTRL* active = m_view ? m_view->get_active_view_ctrl() : nullptr;
  const LUM_VIEW_CTRL* source = this;
  if (active && contains(active) && !active->is_split()) {
    source = active;
  } else {
    while (source->is_split()) source = source->m_panes.front();
  }
  const LUM_VIEW_TYPE_ENUM type = source->m_type;
  const std::string path = source->m_path;

  const bool orientation_matches =
      is_split() && ((wanted == 4 && m_panes.size() == 4) ||
                     (wanted == 2 && m_panes.size() == 2 &&
                      m_splitter->orientation() == (m_positions.row > 0 ? Qt::Vertical : Qt::Horizontal)));
  if (!orientation_matches) {
    if (is_split()) remove_panes();
    if (wanted == 1) {
      m_caption->show();
      open_page(type, path);
      if (m_view) m_view->set_active_view_ctrl(this, false);
      return;
    }
    close_page();
    m_caption->hide();
    m_placeholder->hide();
    if (wanted == 2) {
      m_splitter = new QSplitter(m_positions.row > 0 ? Qt::Vertical : Qt::Horizontal, this);
      add_pane(m_splitter);
      add_pane(m_splitter);
    } else {
      m_splitter = new QSplitter(Qt::Vertical, this);
      for (int r = 0; r < 2; ++r) {
        auto* row = new QSplitter(Qt::Horizontal, m_splitter);
        m_splitter->addWidget(row);
        add_pane(row);
        add_pane(row);
      }
    }
    // A bar dragged to the edge collapses a pane; the control then unsplits.
    m_splitter->setToolTip(QStringLiteral("Drag off to unsplit"));
    std::vector<QSplitter*> splitters{m_splitter};
    if (wanted == 4) {
      for (int r = 0; r < 2; ++r) splitters.push_back(qobject_cast<QSplitter*>(m_splitter->widget(r)));
    }
    for (QSplitter* splitter : splitters) {
      splitter->setChildrenCollapsible(true);
      splitter->setToolTip(QStringLiteral("Drag off to unsplit"));
      // Queued: the splitter that reports the move is destroyed by the unsplit.
      connect(splitter, &QSplitter::splitterMoved, this, &LUM_VIEW_CTRL::unsplit_if_collapsed, Qt::QueuedConnection);
    }
    m_layout->addWidget(m_splitter, 1);
    m_splitter->show();
    for (LUM_VIEW_CTRL* pane : m_panes) pane->open_page(type, path);
    if (m_view) m_view->set_active_view_ctrl(m_panes.front(), false);
  }
  // Positions: the first row / column gets the split position.
  const int h = std::max(height(), 2);
  const int w = std::max(width(), 2);
  if (wanted == 2) {
    const bool rows = m_splitter->orientation() == Qt::Vertical;
    const int total = rows ? h : w;
    const int first = rows ? m_positions.row : m_positions.column;
    m_splitter->setSizes({first, std::max(1, total - first)});
  } else if (wanted == 4) {
    m_splitter->setSizes({m_positions.row, std::max(1, h - m_positions.row)});
    for (int r = 0; r < 2; ++r) {
      auto* row = qobject_cast<QSplitter*>(m_splitter->widget(r));
      if (row) row->setSizes({m_positions.column, std::max(1, w - m_positions.column)});
    }
  }
}

LUM_VIEW_CTRL* LUM_VIEW_CTRL::get_shown_pane() const {
  if (!m_splitter) return nullptr;
  // Pane i lies in row i / 2 and column i % 2 of a four-way split, in slot i of a two-way one.
  auto shown = [](QSplitter* splitter, int slot) {
    const QList<int> sizes = splitter ? splitter->sizes() : QList<int>();
    return slot < sizes.size() && sizes[slot] > 0;
  };
  const LUM_VIEW_CTRL* active = m_view ? m_view->get_active_view_ctrl() : nullptr;
  LUM_VIEW_CTRL* first_shown = nullptr;
  for (size_t i = 0; i < m_panes.size(); ++i) {
    bool visible;
    if (m_panes.size() == 4) {
      const int row = static_cast<int>(i) / 2;
      visible = shown(m_splitter, row) && shown(qobject_cast<QSplitter*>(m_splitter->widget(row)), static_cast<int>(i) % 2);
    } else {
      visible = shown(m_splitter, static_cast<int>(i));
    }
    if (!visible) continue;
    if (m_panes[i]->contains(active)) return m_panes[i];
    if (!first_shown) first_shown = m_panes[i];
  }
  return first_shown;
}

void LUM_VIEW_CTRL::unsplit_if_collapsed() {
  if (!m_splitter) return;
  std::vector<QSplitter*> splitters{m_splitter};
  for (int i = 0; i < m_splitter->count(); ++i) {
    if (auto* inner = qobject_cast<QSplitter*>(m_splitter->widget(i))) splitters.push_back(inner);
  }
  bool collapsed = false;
  for (QSplitter* splitter : splitters) {
    for (int size : splitter->sizes()) collapsed = collapsed || size == 0;
  }
  if (!collapsed) return;
  // The page that stays is the one still in sight (the active one if it is).
  LUM_VIEW_CTRL* keep = get_shown_pane();
  while (keep && keep->is_split()) keep = keep->get_shown_pane();
  if (keep && m_view) m_view->set_active_view_ctrl(keep, false);
  split(LUM_SPLIT_NONE);
}

void LUM_VIEW_CTRL::mousePressEvent(QMouseEvent* event) {
  if (m_view && !is_split()) m_view->set_active_view_ctrl(this, true);
  QFrame::mousePressEvent(event);
}

void LUM_VIEW_CTRL::contextMenuEvent(QContextMenuEvent* event) {
  if (!m_view || is_split() || !m_caption->geometry().contains(event->pos())) {
    QFrame::contextMenuEvent(event);
    return;
  }
  m_view->set_active_view_ctrl(this, true);
  // The window commands may destroy this control (an unsplit removes the
  // panes), so the menu is not its child and the chosen command runs only
  // after the menu has gone, from the event loop, on the report view.
  QMenu menu;
  QAction* horizontal = menu.addAction(QStringLiteral("Split &Horizontally"));
  QAction* vertical = menu.addAction(QStringLiteral("Split &Vertically"));
  QAction* four_way = menu.addAction(QStringLiteral("Split &Four Ways"));
  menu.addSeparator();
  QAction* unsplit = menu.addAction(QStringLiteral("&Unsplit"));
  QAction* unsplit_all = menu.addAction(QStringLiteral("Unsplit &All"));
  menu.addSeparator();
  QAction* refresh_page = menu.addAction(QStringLiteral("&Refresh"));
  QAction* close = menu.addAction(QStringLiteral("&Close Page"));
  horizontal->setEnabled(m_view->can_split());
  vertical->setEnabled(m_view->can_split());
  four_way->setEnabled(m_view->can_split());
  unsplit->setEnabled(m_view->can_unsplit());
  unsplit_all->setEnabled(m_view->get_top_view_ctrl() && m_view->get_top_view_ctrl()->is_split());
  QAction* chosen = menu.exec(event->globalPos());
  if (!chosen) return;
  std::function<void(LUM_REPORT_VIEW*)> command;
  if (chosen == horizontal) command = &LUM_REPORT_VIEW::on_window_split_horizontally;
  else if (chosen == vertical) command = &LUM_REPORT_VIEW::on_window_split_vertically;
  else if (chosen == four_way) command = &LUM_REPORT_VIEW::on_window_split_four_way;
  else if (chosen == unsplit) command = &LUM_REPORT_VIEW::on_window_unsplit;
  else if (chosen == unsplit_all) command = &LUM_REPORT_VIEW::on_window_unsplit_all;
  QPointer<LUM_VIEW_CTRL> self(this);
  if (chosen == refresh_page) command = [self](LUM_REPORT_VIEW*) { if (self) self->refresh(); };
  else if (chosen == close) command = [self](LUM_REPORT_VIEW*) { if (self) self->close_page(); };
  if (!command) return;
  QPointer<LUM_REPORT_VIEW> view(m_view);
  QMetaObject::invokeMethod(m_view, [view, command] { if (view) command(view); }, Qt::QueuedConnection);
}
