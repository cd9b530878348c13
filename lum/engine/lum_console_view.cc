#include "lum_console_view.hh"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QListWidget>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QTimer>

#include <fstream>

#include "frame/lum_file_dialogs.hh"
#include "frame/lum_frame_icons.hh"
#include "engine/lum_completion.hh"
#include "lum_console_ctrl.hh"
#include "lum_console_model.hh"
#include "lum_history_ctrl.hh"
#include "platform/cfg.hh"
#include "platform/gen.hh"
#include "platform/msg.hh"

namespace {

const char* const MODULE = "lum_console_ctrl";
constexpr int INDENT = 18;
constexpr int ICON = 16;

QFont console_font() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setStyleHint(QFont::Monospace);
  return font;
}

QColor kind_colour(int kind) {
  switch (static_cast<MSG_KIND>(kind)) {
    case MSG_KIND::WARNING: return QColor(0x8a, 0x5a, 0x00);
    case MSG_KIND::CRITICAL_WARNING: return QColor(0xb3, 0x4a, 0x00);
    case MSG_KIND::ERROR: return QColor(0xb0, 0x1e, 0x1e);
    case MSG_KIND::INTERNAL_ERROR: return QColor(0x7a, 0x1f, 0x9e);
    case MSG_KIND::EXTRA_INFO: return QColor(0x5b, 0x64, 0x70);
    default: return QColor(0x1f, 0x3f, 0x70);
  }
}

// Paints a console row: indentation by level, the row's icon, its text.
class CONSOLE_ROW_DELEGATE : public QStyledItemDelegate {
 public:
  explicit CONSOLE_ROW_DELEGATE(LUM_CONSOLE_ROWS* rows) : QStyledItemDelegate(rows), m_rows(rows) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    item.text.clear();
    item.icon = QIcon();
    const QWidget* widget = option.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, widget);

    const int type = index.data(LUM_CONSOLE_MODEL::TYPE_ROLE).toInt();
    const int kind = index.data(LUM_CONSOLE_MODEL::KIND_ROLE).toInt();
    const int level = index.data(LUM_CONSOLE_MODEL::LEVEL_ROLE).toInt();
    QIcon icon;
    QColor colour = option.palette.color(QPalette::Text);
    switch (type) {
      case LUM_KRO_OUTPUT_MESSAGE:
        icon = lum_message_icon(static_cast<MSG_KIND>(kind));
        colour = kind_colour(kind);
        break;
      case LUM_KRO_OUTPUT_TCL_PROMPT:
        icon = lum_icon(LUM_ICON::PROMPT);
        colour = QColor(0x14, 0x55, 0x2a);
        break;
      case LUM_KRO_OUTPUT_TCL_CONT_PROMPT:
        icon = lum_icon(LUM_ICON::CONTINUATION_PROMPT);
        colour = QColor(0x14, 0x55, 0x2a);
        break;
      default:
        icon = lum_icon(LUM_ICON::TEXT_LINE);
        break;
    }
    if (option.state & QStyle::State_Selected) colour = option.palette.color(QPalette::HighlightedText);
    const QRect r = option.rect;
    const int x = r.left() + 4 + level * INDENT;
    icon.paint(painter, QRect(x, r.top() + (r.height() - ICON) / 2, ICON, ICON));
    painter->save();
    painter->setPen(colour);
    painter->setFont(option.font);
    QRect text_rect(x + ICON + 6, r.top(), r.right() - x - ICON - 6, r.height());
    painter->drawText(text_rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      index.data(Qt::DisplayRole).toString());
    painter->restore();
  }

  // Every row has the height of one line and the width of the widest row, so
  // that the view can lay out millions of rows from one size.
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const override {
    QFontMetrics metrics(option.font);
    return QSize(m_rows->content_width(), std::max(ICON + 4, metrics.height() + 4));
  }

 private:
  LUM_CONSOLE_ROWS* m_rows;
};

}  // namespace

std::string lum_console_rows_text(const LUM_CONSOLE_MODEL& model, const std::vector<int>& rows,
                                  const std::string& separator, bool trailing) {
  std::string out;
  for (size_t i = 0; i < rows.size(); ++i) {
    const int row = rows[i];
    if (row < 0 || row >= model.row_count()) continue;
    out.append(static_cast<size_t>(model.row_level(row)) * 4, ' ');
    out.append(model.row_text(row));
    if (trailing || i + 1 < rows.size()) out += separator;
  }
  return out;
}

// ---- edit line --------------------------------------------------------------------

void LUM_CONSOLE_EDIT_CTRL::complete() {
  LUM_COMPLETION_SOURCE source;
  // Hidden queries are refused while the engine works; then only the
  // commands known from before are offered.
  if (m_console->is_kro_running() && !m_console->is_busy()) {
    std::vector<std::string> lines;
    m_console->run_command(LUM_COMPLETION_QUERY, &lines);
    source = lum_read_completion_lines(lines);
    if (!source.commands.empty()) m_commands = source.commands;
  }
  source.commands = m_commands;
  const std::string line = text().toStdString();
  const int cursor = static_cast<int>(text().left(cursorPosition()).toStdString().size());
  const LUM_COMPLETION found = lum_complete(line, cursor, source);
  if (found.candidates.empty()) return;
  m_word_start = QString::fromStdString(line.substr(0, found.start)).size();
  m_word_end = QString::fromStdString(line.substr(0, found.end)).size();
  const auto put = [this](const QString& word, bool whole) {
    QString now = text();
    now.replace(m_word_start, m_word_end - m_word_start, word + (whole ? " " : ""));
    setText(now);
    setCursorPosition(m_word_start + word.size() + (whole ? 1 : 0));
    m_word_end = m_word_start + word.size();
  };
  if (found.candidates.size() == 1) {
    put(QString::fromStdString(found.candidates.front()), true);
    return;
  }
  put(QString::fromStdString(found.common_prefix), false);
  QStringList words;
  for (const std::string& c : found.candidates) words << QString::fromStdString(c);
  if (m_completer == nullptr) {
    // A popup list of its own: Return, Enter or a click takes the current
    // candidate into the line (and never runs it), Escape closes the list.
    m_completer = new QListWidget(this);
    m_completer->setObjectName("lum_console_completer");
    m_completer->setWindowFlags(Qt::Popup);
    m_completer->setFont(font());
    m_completer->installEventFilter(this);
    connect(m_completer, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { take_candidate(item); });
  }
  m_completer->clear();
  m_completer->addItems(words);
  m_completer->setCurrentRow(0);
  const int rows = std::min(12, static_cast<int>(words.size()));
  m_completer->resize(m_completer->sizeHintForColumn(0) + 40, rows * m_completer->sizeHintForRow(0) + 6);
  m_completer->move(mapToGlobal(cursorRect().bottomLeft()));
  m_completer->show();
  m_completer->setFocus();
}

void LUM_CONSOLE_EDIT_CTRL::take_candidate(QListWidgetItem* item) {
  m_completer->hide();
  setFocus();
  if (item == nullptr) return;
  const QString word = item->text();
  QString now = text();
  now.replace(m_word_start, m_word_end - m_word_start, word + " ");
  setText(now);
  setCursorPosition(m_word_start + word.size() + 1);
}

bool LUM_CONSOLE_EDIT_CTRL::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_completer && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Tab) {
      take_candidate(m_completer->currentItem());
      return true;
    }
    if (key == Qt::Key_Escape) {
      m_completer->hide();
      setFocus();
      return true;
    }
  }
  return QLineEdit::eventFilter(watched, event);
}

LUM_CONSOLE_EDIT_CTRL::LUM_CONSOLE_EDIT_CTRL(LUM_CONSOLE_CTRL* console, QWidget* parent)
    : QLineEdit(parent), m_console(console) {
  if (console == nullptr)
    msg_internal_error("set_console_ctrl must be called before the edit control is created", MODULE, __LINE__);
  setObjectName("LUM_CONSOLE_EDIT_CTRL");
  setFrame(false);
  setFont(console_font());
  setPlaceholderText("Type a Tcl command for the engine and press Enter");
  connect(this, &QLineEdit::returnPressed, this, [this] { emit submitted(text()); });
}

bool LUM_CONSOLE_EDIT_CTRL::event(QEvent* event) {
  // Tab stays in the edit line instead of moving the focus.
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    if (key->key() == Qt::Key_Tab && !isReadOnly()) {
      keyPressEvent(key);
      return true;
    }
  }
  return QLineEdit::event(event);
}

void LUM_CONSOLE_EDIT_CTRL::keyPressEvent(QKeyEvent* event) {
  if (isReadOnly() || m_console == nullptr) {
    QLineEdit::keyPressEvent(event);
    return;
  }
  switch (event->key()) {
    case Qt::Key_Tab:
      if (text().left(cursorPosition()).trimmed().isEmpty()) {
        insert("    ");
        break;
      }
      complete();
      return;
    case Qt::Key_PageUp:
      setText(QString::fromStdString(m_console->history_oldest()));
      break;
    case Qt::Key_PageDown:
      clear();
      m_console->reset_history_cursor();
      break;
    case Qt::Key_Up:
      setText(QString::fromStdString(m_console->history_older()));
      break;
    case Qt::Key_Down:
      setText(QString::fromStdString(m_console->history_newer()));
      break;
    case Qt::Key_Escape:
      emit abandoned();
      return;
    default:
      QLineEdit::keyPressEvent(event);
      return;
  }
  end(false);
}

// ---- rows -------------------------------------------------------------------------

LUM_CONSOLE_ROWS::LUM_CONSOLE_ROWS(LUM_CONSOLE_CTRL* console, QWidget* parent) : QListView(parent), m_console(console) {
  setObjectName("LUM_CONSOLE_CTRL");
  setModel(console->get_model());
  setItemDelegate(new CONSOLE_ROW_DELEGATE(this));
  setFont(console_font());
  setUniformItemSizes(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  connect(console, &LUM_CONSOLE_CTRL::rows_drained, this, &LUM_CONSOLE_ROWS::on_rows_drained);
  connect(console, &LUM_CONSOLE_CTRL::open_edit_line_requested, this, [this] { open_edit_line(true); });
  connect(console, &LUM_CONSOLE_CTRL::busy_changed, this, [this](bool busy) {
    if (!busy) open_edit_line(hasFocus() || (m_edit && m_edit->hasFocus()));
  });
  connect(console, &LUM_CONSOLE_CTRL::console_cleared, this, [this] {
    m_edit = nullptr;
    m_edit_row = -1;
    m_measured_rows = 0;
    m_content_width = 0;
  });
}

void LUM_CONSOLE_ROWS::measure_new_rows() {
  const LUM_CONSOLE_MODEL& rows = *m_console->get_model();
  if (m_measured_rows > rows.row_count()) m_measured_rows = 0;  // cleared meanwhile
  // The console font has fixed width, so a row's width follows from its
  // length without shaping its text.
  const int advance = QFontMetrics(font()).horizontalAdvance(QLatin1Char('M'));
  int widest = m_content_width;
  for (int row = m_measured_rows; row < rows.row_count(); ++row) {
    const int width = 4 + rows.row_level(row) * INDENT + ICON + 6 +
                      static_cast<int>(rows.row_text(row).size()) * advance + 8;
    widest = std::max(widest, width);
  }
  m_measured_rows = rows.row_count();
  if (widest != m_content_width) {
    m_content_width = widest;
    scheduleDelayedItemsLayout();
  }
}

int LUM_CONSOLE_ROWS::content_width() const { return std::max(m_content_width, viewport()->width()); }

void LUM_CONSOLE_ROWS::resizeEvent(QResizeEvent* event) {
  QListView::resizeEvent(event);
  scheduleDelayedItemsLayout();
}

void LUM_CONSOLE_ROWS::on_rows_drained(int last_row) {
  measure_new_rows();
  const bool had_focus = hasFocus() || (m_edit && m_edit->hasFocus());
  QString kept;
  if (m_edit && m_edit_row != last_row) {
    kept = m_edit->text();
    close_edit_line();
  }
  const QModelIndex index = model()->index(last_row, 0);
  scrollTo(index, QAbstractItemView::PositionAtBottom);
  // The caret goes to the last row; the open prompt row stays unselected so
  // the edit line on it reads like the rest of the console.
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
  if (LUM_CONSOLE_EDIT_CTRL* edit = open_edit_line(had_focus); edit && !kept.isEmpty()) edit->setText(kept);
}

LUM_CONSOLE_EDIT_CTRL* LUM_CONSOLE_ROWS::open_edit_line(bool take_focus) {
  LUM_CONSOLE_MODEL* rows = m_console->get_model();
  const int last = rows->row_count() - 1;
  if (last < 0 || m_console->is_busy() || !m_console->is_interactive()) return nullptr;
  // Rows added inside a drain are announced to the view at its end; the edit
  // line waits for that (the drain's end opens it).
  if (model()->rowCount() != rows->row_count()) return nullptr;
  const LUM_KRO_OUTPUT_TYPE_ENUM type = rows->row_type(last);
  if ((type != LUM_KRO_OUTPUT_TCL_PROMPT && type != LUM_KRO_OUTPUT_TCL_CONT_PROMPT) || !rows->row_text(last).empty())
    return nullptr;
  if (m_edit && m_edit_row == last) {
    if (take_focus) m_edit->setFocus();
    return m_edit;
  }
  close_edit_line();
  auto* edit = new LUM_CONSOLE_EDIT_CTRL(m_console, nullptr);
  // The edit line lets the row's prompt icon show and starts where the
  // texts of the other rows start.
  edit->setTextMargins(4 + ICON + 2, 0, 0, 0);
  edit->setStyleSheet("QLineEdit { background: transparent; }");
  connect(edit, &LUM_CONSOLE_EDIT_CTRL::submitted, this, [this] { on_validate_edit(); });
  connect(edit, &LUM_CONSOLE_EDIT_CTRL::abandoned, this, [this] {
    if (m_edit) m_edit->clear();
    m_console->reset_history_cursor();
  });
  const QModelIndex index = model()->index(last, 0);
  setIndexWidget(index, edit);
  m_edit = edit;
  m_edit_row = last;
  scrollTo(index);
  if (take_focus) edit->setFocus();
  return edit;
}

void LUM_CONSOLE_ROWS::close_edit_line() {
  if (m_edit && m_edit_row >= 0 && m_edit_row < model()->rowCount())
    setIndexWidget(model()->index(m_edit_row, 0), nullptr);
  else if (m_edit)
    m_edit->deleteLater();
  m_edit = nullptr;
  m_edit_row = -1;
}

void LUM_CONSOLE_ROWS::on_validate_edit() {
  if (!m_edit) return;
  const bool read_only = m_edit->isReadOnly();
  const std::string text = m_edit->text().trimmed().toStdString();
  const bool had_focus = m_edit->hasFocus();
  close_edit_line();
  if (had_focus) setFocus();
  if (read_only || !m_console->is_interactive()) return;
  m_console->run_command(text);
  measure_new_rows();
}

std::vector<int> LUM_CONSOLE_ROWS::selected_rows() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) rows.push_back(index.row());
  std::sort(rows.begin(), rows.end());
  return rows;
}

void LUM_CONSOLE_ROWS::on_copy() {
  const std::vector<int> rows = selected_rows();
  if (rows.empty()) return;
  QApplication::clipboard()->setText(
      QString::fromStdString(lum_console_rows_text(*m_console->get_model(), rows, "\r\n", false)));
}

bool LUM_CONSOLE_ROWS::write_rows_to(const std::string& path) const {
  const LUM_CONSOLE_MODEL& rows = *m_console->get_model();
  if (rows.row_count() == 0) return false;
  std::ofstream out(path, std::ios::binary);
  if (!out) return false;
  std::vector<int> all(static_cast<size_t>(rows.row_count()));
  for (int i = 0; i < rows.row_count(); ++i) all[static_cast<size_t>(i)] = i;
  out << lum_console_rows_text(rows, all, "\n", true);
  return static_cast<bool>(out);
}

bool LUM_CONSOLE_ROWS::on_save() {
  LUM_FILE_REQUEST request;
  request.save = true;
  request.title = "Save Console";
  request.default_name = "log.txt";
  request.default_suffix = "txt";
  request.filters = {"Text Files (*.txt)", "All Files (*)"};
  const std::string path = lum_ask_file(this, request);
  return !path.empty() && write_rows_to(path);
}

void LUM_CONSOLE_ROWS::clear() {
  close_edit_line();
  m_console->clear();
}

void LUM_CONSOLE_ROWS::toggle_expand(int row) {
  const LUM_CONSOLE_MODEL& rows = *m_console->get_model();
  if (row < 0 || row >= rows.row_count() || rows.row_type(row) != LUM_KRO_OUTPUT_MESSAGE) return;
  const int level = rows.row_level(row);
  int last = row;
  while (last + 1 < rows.row_count() && rows.row_level(last + 1) > level) ++last;
  if (last == row) return;
  const bool collapse = !isRowHidden(row + 1);
  for (int r = row + 1; r <= last; ++r) setRowHidden(r, collapse);
  if (collapse) return;
  // Expanding: show the last dependent row if all of them fit, else put the
  // message row at the top.
  const int visible_rows = viewport()->height() / std::max(1, sizeHintForRow(row));
  if (last - row < visible_rows) scrollTo(model()->index(last, 0));
  else scrollTo(model()->index(row, 0), QAbstractItemView::PositionAtTop);
}

QMenu* LUM_CONSOLE_ROWS::make_context_menu(const QPoint& viewport_pos) {
  if (!indexAt(viewport_pos).isValid()) return nullptr;
  auto* menu = new QMenu(this);
  QAction* copy = menu->addAction("&Copy", this, &LUM_CONSOLE_ROWS::on_copy);
  copy->setShortcut(QKeySequence::Copy);
  copy->setEnabled(selectionModel()->hasSelection());
  menu->addAction("&Save...", this, [this] { on_save(); });
  menu->addAction("C&lear", this, &LUM_CONSOLE_ROWS::clear);
  menu->addSeparator();
  // Locating a message's source needs the other tools of the design suite;
  // the analyzer always runs on its own, so the entries stay disabled and say why.
  QMenu* locate = menu->addMenu("L&ocate");
  const QString reason = "Locating needs the design suite's other tools; the analyzer runs on its own here.";
  locate->setToolTipsVisible(true);
  for (const char* target : {"in Assignments", "in Pin Placement", "in Floorplan", "in Chip View",
                             "in Resource Properties", "in Technology Map", "in RTL Schematic", "in Design File"}) {
    QAction* action = locate->addAction(QString("Locate %1").arg(target));
    action->setEnabled(false);
    action->setToolTip(reason);
    action->setStatusTip(reason);
  }
  locate->menuAction()->setStatusTip(reason);
  locate->menuAction()->setToolTip(reason);
  return menu;
}

void LUM_CONSOLE_ROWS::contextMenuEvent(QContextMenuEvent* event) {
  QMenu* menu = make_context_menu(event->pos());
  if (menu == nullptr) return;
  menu->exec(event->globalPos());
  delete menu;
}

void LUM_CONSOLE_ROWS::update_focus_state() {
  m_console->set_has_focus(hasFocus() || (m_edit && m_edit->hasFocus()));
}

void LUM_CONSOLE_ROWS::focusInEvent(QFocusEvent* event) {
  QListView::focusInEvent(event);
  update_focus_state();
  // Clicking into the console leads straight to the edit line.
  if (!selectionModel()->hasSelection() || currentIndex().row() == model()->rowCount() - 1)
    if (LUM_CONSOLE_EDIT_CTRL* edit = open_edit_line(false)) edit->setFocus();
}

void LUM_CONSOLE_ROWS::focusOutEvent(QFocusEvent* event) {
  QListView::focusOutEvent(event);
  update_focus_state();
}

void LUM_CONSOLE_ROWS::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->pos());
  if (index.isValid()) toggle_expand(index.row());
  QListView::mouseDoubleClickEvent(event);
}

void LUM_CONSOLE_ROWS::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    on_copy();
    return;
  }
  if (event->key() == Qt::Key_Space && currentIndex().isValid()) {
    toggle_expand(currentIndex().row());
    return;
  }
  // Typing on a row goes to the edit line.
  if (!event->text().isEmpty() && event->text().at(0).isPrint() && !(event->modifiers() & Qt::ControlModifier)) {
    if (LUM_CONSOLE_EDIT_CTRL* edit = open_edit_line(true)) {
      edit->insert(event->text());
      return;
    }
  }
  QListView::keyPressEvent(event);
}

// ---- the tab window ------------------------------------------------------------------

LUM_CONSOLE_VIEW::LUM_CONSOLE_VIEW(LUM_CONSOLE_CTRL* console, QWidget* parent) : QTabWidget(parent), m_console(console) {
  setObjectName("LUM_CONSOLE_BAR");
  setTabPosition(QTabWidget::South);
  setDocumentMode(true);
  m_rows = new LUM_CONSOLE_ROWS(console, this);
  m_history = new LUM_HISTORY_CTRL(console, this);
  addTab(m_rows, "Console");
  addTab(m_history, "History");
  setCurrentIndex(0);
  if (cfg_is_on("debug_msg") && !gen_is_in_ui_process()) {
    m_debug = new QPlainTextEdit(this);
    m_debug->setObjectName("LUM_DEBUG_TAB");
    m_debug->setReadOnly(true);
    m_debug->setFont(console_font());
    m_debug->setLineWrapMode(QPlainTextEdit::NoWrap);
    addTab(m_debug, "vexa_lumex.exe debug messages");
    connect(console, &LUM_CONSOLE_CTRL::debug_lines_ready, this, &LUM_CONSOLE_VIEW::take_debug_lines);
  }
}

void LUM_CONSOLE_VIEW::take_debug_lines() {
  if (m_debug == nullptr) return;
  for (const std::string& line : m_console->take_debug_lines()) m_debug->appendPlainText(QString::fromStdString(line));
  m_debug->verticalScrollBar()->setValue(m_debug->verticalScrollBar()->maximum());
}
