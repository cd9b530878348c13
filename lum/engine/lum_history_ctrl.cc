#include "lum_history_ctrl.hh"

#include <QAction>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QMenu>
#include <QPainter>
#include <QStyledItemDelegate>

#include <fstream>

#include "frame/lum_file_dialogs.hh"
#include "frame/lum_frame_commands.hh"
#include "lum_console_ctrl.hh"

namespace {

// Draws each entry after a grey gutter holding its number, like a row header.
class HISTORY_DELEGATE : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  static constexpr int GUTTER = 44;

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    QRect gutter(option.rect.left(), option.rect.top(), GUTTER, option.rect.height());
    painter->fillRect(gutter, QColor(0xee, 0xf0, 0xf3));
    painter->setPen(QColor(0x8a, 0x93, 0x9e));
    painter->drawText(gutter.adjusted(0, 0, -6, 0), Qt::AlignRight | Qt::AlignVCenter, QString::number(index.row() + 1));
    item.rect.setLeft(option.rect.left() + GUTTER + 6);
    QStyledItemDelegate::paint(painter, item, index);
  }
};

}  // namespace

LUM_HISTORY_CTRL::LUM_HISTORY_CTRL(LUM_CONSOLE_CTRL* console, QWidget* parent)
    : QListView(parent), m_console(console) {
  setObjectName("LUM_HISTORY_CTRL");
  setModel(&m_model);
  setItemDelegate(new HISTORY_DELEGATE(this));
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setUniformItemSizes(true);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  if (m_console != nullptr)
    connect(m_console, &LUM_CONSOLE_CTRL::history_entry_added, this, &LUM_HISTORY_CTRL::add_entry);
  connect(this, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
    if (m_console != nullptr && index.isValid()) m_console->run_command(entry(index.row()).toStdString());
  });
}

void LUM_HISTORY_CTRL::add_entry(const QString& text) {
  const int row = m_model.rowCount();
  m_model.insertRows(row, 1);
  m_model.setData(m_model.index(row), text);
  scrollToBottom();
}

QString LUM_HISTORY_CTRL::entry(int row) const { return m_model.data(m_model.index(row), Qt::DisplayRole).toString(); }

void LUM_HISTORY_CTRL::run_selected() {
  if (m_console == nullptr) return;
  // Copied first: running an entry appends to this very list.
  std::vector<std::string> commands;
  for (const QModelIndex& index : selectionModel()->selectedIndexes()) commands.push_back(entry(index.row()).toStdString());
  for (const std::string& command : commands) m_console->run_command(command);
}

bool LUM_HISTORY_CTRL::write_to(const std::string& path) const {
  std::ofstream out(path, std::ios::binary);
  if (!out) return false;
  for (int row = 0; row < m_model.rowCount(); ++row) out << entry(row).toStdString() << "\n";
  return static_cast<bool>(out);
}

bool LUM_HISTORY_CTRL::save_as() {
  if (m_model.rowCount() == 0) return false;
  LUM_FILE_REQUEST request;
  request.save = true;
  request.title = "Save History As";
  request.default_name = "history.tcl";
  request.default_suffix = "tcl";
  request.filters = {"Tcl Script File (*.tcl)", "Text Files (*.txt)", "All Files (*)"};
  const std::string path = lum_ask_file(this, request);
  return !path.empty() && write_to(path);
}

QMenu* LUM_HISTORY_CTRL::make_context_menu(const QPoint& viewport_pos) {
  if (!indexAt(viewport_pos).isValid()) return nullptr;
  auto* menu = new QMenu(this);
  QAction* run = menu->addAction("&Run", this, &LUM_HISTORY_CTRL::run_selected);
  run->setData(static_cast<unsigned>(LUM_ID_HISTORY_RUN));
  run->setEnabled(selectionModel()->hasSelection());
  QAction* save = menu->addAction("Save &As...", this, [this] { save_as(); });
  save->setData(static_cast<unsigned>(LUM_ID_HISTORY_SAVE_AS));
  return menu;
}

void LUM_HISTORY_CTRL::contextMenuEvent(QContextMenuEvent* event) {
  // Scroll areas hand the viewport's context menu events on in viewport coordinates.
  QMenu* menu = make_context_menu(event->pos());
  if (menu == nullptr) return;
  menu->exec(event->globalPos());
  delete menu;
}
