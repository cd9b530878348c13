#include "dialogs/lum_name_finder_dlg.hh"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

#include "engine/lum_console_ctrl.hh"
#include "engine/lum_frame_iface.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_name_finder_dlg";

LUM_NAME_FINDER_SEARCH::RUN_HIDDEN& hidden_runner() {
  static LUM_NAME_FINDER_SEARCH::RUN_HIDDEN runner;
  return runner;
}

// The console's hidden, synchronous request; nothing without a frame (an
// internal error) or while the engine is busy (the console says so).
std::vector<std::string> run_hidden_in_console(const std::string& command) {
  std::vector<std::string> lines;
  LUM_FRAME_IFACE* frame = lum_get_frame();
  if (!MSG_ASSERT(frame != NULL, MODULE)) return lines;
  if (LUM_CONSOLE_CTRL* console = frame->get_console()) console->run_command(command, &lines);
  return lines;
}

}  // namespace

// ---- list model ------------------------------------------------------------------------

void LUM_NAME_LIST_MODEL::set_names(std::vector<std::string> names) {
  beginResetModel();
  m_names = std::move(names);
  m_shown.clear();
  m_filtered = false;
  endResetModel();
}

void LUM_NAME_LIST_MODEL::set_filter(const std::string& pattern, bool no_case) {
  beginResetModel();
  m_shown.clear();
  m_filtered = !(pattern.empty() || pattern == "*");
  if (m_filtered) {
    for (size_t i = 0; i < m_names.size(); ++i)
      if (lum_name_matches(m_names[i], pattern, no_case)) m_shown.push_back(static_cast<int>(i));
  }
  endResetModel();
}

std::vector<std::string> LUM_NAME_LIST_MODEL::shown_names() const {
  if (!m_filtered) return m_names;
  std::vector<std::string> names;
  names.reserve(m_shown.size());
  for (int i : m_shown) names.push_back(m_names[i]);
  return names;
}

const std::string& LUM_NAME_LIST_MODEL::shown_name(int row) const {
  return m_filtered ? m_names[m_shown[row]] : m_names[row];
}

void LUM_NAME_LIST_MODEL::set_header(const std::string& text) {
  m_header = QString::fromStdString(text);
  emit headerDataChanged(Qt::Horizontal, 0, 0);
}

int LUM_NAME_LIST_MODEL::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return static_cast<int>(m_filtered ? m_shown.size() : m_names.size());
}

int LUM_NAME_LIST_MODEL::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : 1; }

QVariant LUM_NAME_LIST_MODEL::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return QVariant();
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole) return QString::fromStdString(shown_name(index.row()));
  return QVariant();
}

QVariant LUM_NAME_LIST_MODEL::headerData(int section, Qt::Orientation orientation, int role) const {
  if (section == 0 && orientation == Qt::Horizontal && role == Qt::DisplayRole) return m_header;
  return QVariant();
}

// ---- dialog ---------------------------------------------------------------------------

void LUM_NAME_FINDER_DLG::set_hidden_runner(LUM_NAME_FINDER_SEARCH::RUN_HIDDEN runner) {
  hidden_runner() = std::move(runner);
}

LUM_NAME_FINDER_DLG::LUM_NAME_FINDER_DLG(QWidget* parent, std::uint8_t collection_mask)
    : LUM_DIALOG_BASE(parent, "Name Finder") {
  setObjectName("LUM_NAME_FINDER_DLG");
  m_fields.collection_mask = collection_mask;
  const std::vector<std::string> offered = m_fields.offered_collections();
  MSG_ASSERT(!offered.empty(), MODULE);
  m_fields.collection = m_fields.initial_collection();

  // Collection command.
  m_collection = new QComboBox(this);
  m_collection->setObjectName("collection");
  for (const std::string& name : offered) m_collection->addItem(QString::fromStdString(name));
  m_collection->setCurrentText(QString::fromStdString(m_fields.collection));
  int row = take_row();
  form()->addWidget(new QLabel("&Collection:", this), row, 0);
  form()->addWidget(m_collection, row, 1);
  connect(m_collection, &QComboBox::currentTextChanged, this, [this](const QString& text) {
    m_fields.collection = text.toStdString();
    on_change_collection();
  });

  // Pattern and the List button.
  auto* pattern = new QLineEdit(this);
  pattern->setObjectName("pattern");
  bind_edit(pattern, &m_fields.pattern);
  m_list_button = new QPushButton("&List", this);
  m_list_button->setObjectName("list");
  m_list_button->setAutoDefault(false);
  connect(m_list_button, &QPushButton::clicked, this, [this] { on_click_list(); });
  connect(pattern, &QLineEdit::returnPressed, this, [this] { on_click_list(); });
  row = take_row();
  auto* pattern_label = new QLabel("&Pattern:", this);
  pattern_label->setBuddy(pattern);
  form()->addWidget(pattern_label, row, 0);
  form()->addWidget(pattern, row, 1);
  form()->addWidget(m_list_button, row, 2);

  add_check("Ignore &case", &m_fields.no_case, "no_case");
  m_hierarchical = add_check("&Hierarchical", &m_fields.hierarchical, "hierarchical");
  m_compatibility = add_check("Co&mpatibility mode", &m_fields.compatibility_mode, "compatibility_mode");

  // The two lists with the copy and remove buttons between them.
  m_matches = new LUM_NAME_LIST_MODEL(this);
  m_selected = new LUM_NAME_LIST_MODEL(this);
  m_matches->set_header(LUM_NAME_FINDER_FIELDS::matches_header(0));
  m_selected->set_header(m_fields.selected_header());
  m_matches_view = make_list_view(m_matches, "matches");
  m_selected_view = make_list_view(m_selected, "selected");
  connect(m_matches_view, &QTableView::doubleClicked, this, [this] { on_copy_one(); });

  auto* buttons = new QVBoxLayout;
  auto add_button = [this, buttons](const QString& text, const char* name, void (LUM_NAME_FINDER_DLG::*slot)()) {
    auto* button = new QPushButton(text, this);
    button->setObjectName(name);
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this, slot] { (this->*slot)(); });
    buttons->addWidget(button);
  };
  buttons->addStretch(1);
  add_button(">", "copy_one", &LUM_NAME_FINDER_DLG::on_copy_one);
  add_button(">>", "copy_all", &LUM_NAME_FINDER_DLG::on_copy_all);
  add_button("<", "remove_one", &LUM_NAME_FINDER_DLG::on_remove_one);
  add_button("<<", "remove_all", &LUM_NAME_FINDER_DLG::on_remove_all);
  buttons->addStretch(1);

  auto* lists = new QHBoxLayout;
  lists->addWidget(m_matches_view, 1);
  lists->addLayout(buttons);
  lists->addWidget(m_selected_view, 1);
  row = take_row();
  form()->addLayout(lists, row, 0, 1, 3);
  form()->setRowStretch(row, 1);

  // Progress of a search, its Cancel, and the note under a capped list.
  m_progress = new QProgressBar(this);
  m_progress->setObjectName("progress");
  m_cancel_button = new QPushButton("Cancel search", this);
  m_cancel_button->setObjectName("cancel_search");
  m_cancel_button->setAutoDefault(false);
  connect(m_cancel_button, &QPushButton::clicked, this, [this] { cancel_search(); });
  auto* progress_row = new QHBoxLayout;
  progress_row->addWidget(m_progress, 1);
  progress_row->addWidget(m_cancel_button);
  form()->addLayout(progress_row, take_row(), 0, 1, 3);
  m_note = new QLabel(this);
  m_note->setObjectName("note");
  m_note->setWordWrap(true);
  form()->addWidget(m_note, take_row(), 0, 1, 3);
  show_searching(false);

  resize(720, 520);
  on_change();
}

QTableView* LUM_NAME_FINDER_DLG::make_list_view(LUM_NAME_LIST_MODEL* model, const char* object_name) {
  auto* view = new QTableView(this);
  view->setObjectName(object_name);
  view->setModel(model);
  // Fixed row heights and no row header: the view never measures rows, so
  // a list of hundreds of thousands of names fills and filters at once.
  view->verticalHeader()->setVisible(false);
  view->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 4);
  view->setShowGrid(false);
  view->setWordWrap(false);
  view->horizontalHeader()->setHighlightSections(false);
  view->setSelectionMode(QAbstractItemView::ExtendedSelection);
  view->setSelectionBehavior(QAbstractItemView::SelectRows);
  view->horizontalHeader()->setStretchLastSection(true);
  view->setMinimumWidth(220);

  auto* copy = new QAction("Copy\tCtrl+C", view);
  connect(copy, &QAction::triggered, this, [this, view] { copy_selection_to_clipboard(view); });
  view->installEventFilter(this);
  view->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(view, &QWidget::customContextMenuRequested, this, [view, copy](const QPoint& at) {
    // Offered only over a selected row.
    const QModelIndex index = view->indexAt(at);
    if (!index.isValid() || !view->selectionModel()->isSelected(index)) return;
    QMenu menu(view);
    menu.addAction(copy);
    menu.exec(view->viewport()->mapToGlobal(at));
  });
  return view;
}

bool LUM_NAME_FINDER_DLG::eventFilter(QObject* watched, QEvent* event) {
  auto* view = qobject_cast<QTableView*>(watched);
  if (view != nullptr && (view == m_matches_view || view == m_selected_view) &&
      (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) &&
      static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
    if (event->type() == QEvent::KeyPress) copy_selection_to_clipboard(view);
    event->accept();
    return event->type() == QEvent::KeyPress;
  }
  return LUM_DIALOG_BASE::eventFilter(watched, event);
}

std::vector<int> LUM_NAME_FINDER_DLG::selected_rows(QTableView* view) const {
  std::vector<int> rows;
  for (const QModelIndex& index : view->selectionModel()->selectedRows()) rows.push_back(index.row());
  return rows;
}

void LUM_NAME_FINDER_DLG::copy_selection_to_clipboard(QTableView* view) const {
  auto* model = static_cast<LUM_NAME_LIST_MODEL*>(view->model());
  std::vector<int> rows = selected_rows(view);
  if (rows.empty()) return;
  std::sort(rows.begin(), rows.end());
  QStringList texts;
  for (int row : rows) texts << QString::fromStdString(model->shown_name(row));
  QApplication::clipboard()->setText(texts.join("\r\n"));
}

void LUM_NAME_FINDER_DLG::show_searching(bool searching) {
  m_searching = searching;
  m_progress->setVisible(searching);
  m_cancel_button->setVisible(searching);
  m_list_button->setEnabled(!searching);
  m_collection->setEnabled(!searching);
}

void LUM_NAME_FINDER_DLG::after_compose() {
  const bool apply = m_fields.hierarchy_options_apply();
  m_hierarchical->setEnabled(apply);
  m_compatibility->setEnabled(apply);
  m_selected->set_header(m_fields.selected_header());
  // Filtering as you type narrows the names of the last search.
  if (m_fields.pattern == m_filter_pattern && m_fields.no_case == m_filter_no_case) return;
  m_filter_pattern = m_fields.pattern;
  m_filter_no_case = m_fields.no_case;
  if (!m_matches->get_names().empty()) {
    m_matches->set_filter(m_fields.pattern, m_fields.no_case);
    m_matches->set_header(LUM_NAME_FINDER_FIELDS::matches_header(static_cast<size_t>(m_matches->rowCount())));
  }
}

void LUM_NAME_FINDER_DLG::reject() {
  m_cancel = true;
  LUM_DIALOG_BASE::reject();
}

void LUM_NAME_FINDER_DLG::on_change_collection() {
  m_fields.normalise();
  m_matches->set_names({});
  m_matches->set_header(LUM_NAME_FINDER_FIELDS::matches_header(0));
  m_fields.selected.clear();
  m_selected->set_names({});
  m_note->clear();
  write_back();
}

void LUM_NAME_FINDER_DLG::on_click_list() {
  if (m_searching) return;
  QApplication::setOverrideCursor(Qt::WaitCursor);
  m_matches->set_names({});
  m_note->clear();
  m_cancel = false;
  show_searching(true);

  const LUM_NAME_FINDER_SEARCH::RUN_HIDDEN runner = hidden_runner() ? hidden_runner() : run_hidden_in_console;
  LUM_NAME_FINDER_SEARCH search(runner, m_fields.filter_expression(), m_page, m_cap);
  if (search.start()) {
    m_progress->setRange(0, static_cast<int>(search.wanted()));
    m_progress->setValue(0);
    // Between pages the window follows the user: repaints, and the Cancel button.
    while (!m_cancel && search.next_page()) {
      m_progress->setValue(static_cast<int>(search.names().size()));
      QCoreApplication::processEvents();
    }
  }
  search.finish();
  const size_t fetched = search.names().size();
  std::string note = search.cap_note();
  if (m_cancel && fetched < search.wanted())
    note = "Search cancelled: " + std::to_string(fetched) + " of " + std::to_string(search.total()) + " names listed.";
  std::vector<std::string> names = search.take_names();
  lum_sort_names(names);
  // The engine matched the pattern itself: the list starts unfiltered.
  m_matches->set_names(std::move(names));
  m_filter_pattern = m_fields.pattern;
  m_filter_no_case = m_fields.no_case;
  m_matches->set_header(LUM_NAME_FINDER_FIELDS::matches_header(fetched));
  m_note->setText(QString::fromStdString(note));
  show_searching(false);
  QApplication::restoreOverrideCursor();
}

void LUM_NAME_FINDER_DLG::on_copy_one() {
  std::vector<int> rows = selected_rows(m_matches_view);
  if (rows.empty()) return;
  std::vector<std::string> chosen;
  for (int row : rows) chosen.push_back(m_matches->shown_name(row));
  m_fields.copy_one(chosen);
  m_selected->set_names(m_fields.selected);
  on_change();
}

void LUM_NAME_FINDER_DLG::on_copy_all() {
  if (m_matches->rowCount() == 0) return;
  m_fields.copy_all(m_matches->shown_names());
  m_selected->set_names(m_fields.selected);
  on_change();
}

void LUM_NAME_FINDER_DLG::on_remove_one() {
  std::vector<int> rows = selected_rows(m_selected_view);
  if (rows.empty()) return;
  m_fields.remove_rows(rows);
  m_selected->set_names(m_fields.selected);
  on_change();
}

void LUM_NAME_FINDER_DLG::on_remove_all() {
  m_fields.selected.clear();
  m_selected->set_names({});
  on_change();
}
