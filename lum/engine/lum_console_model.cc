#include "lum_console_model.hh"

#include <algorithm>

namespace {

const char* kind_label(MSG_KIND kind) {
  switch (kind) {
    case MSG_KIND::INFO: return "Info";
    case MSG_KIND::EXTRA_INFO: return "Extra Info";
    case MSG_KIND::WARNING: return "Warning";
    case MSG_KIND::CRITICAL_WARNING: return "Critical Warning";
    case MSG_KIND::ERROR: return "Error";
    case MSG_KIND::INTERNAL_ERROR: return "Internal Error";
  }
  return "Info";
}

}  // namespace

LUM_CONSOLE_MODEL::LUM_CONSOLE_MODEL(QObject* parent) : QAbstractListModel(parent) {}

LUM_CONSOLE_MODEL::~LUM_CONSOLE_MODEL() = default;

int LUM_CONSOLE_MODEL::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : m_announced_rows;
}

QVariant LUM_CONSOLE_MODEL::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() < 0 || index.row() >= m_announced_rows) return QVariant();
  int row = index.row();
  switch (role) {
    case Qt::DisplayRole: {
      std::string_view text = row_text(row);
      return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    case TYPE_ROLE: return static_cast<int>(m_rows[row].type);
    case KIND_ROLE: return static_cast<int>(m_rows[row].kind);
    case LEVEL_ROLE: return static_cast<int>(m_rows[row].level);
    case MESSAGE_ROLE: return static_cast<int>(m_rows[row].message);
    default: return QVariant();
  }
}

std::string_view LUM_CONSOLE_MODEL::row_text(int row) const {
  if (row < 0 || row >= row_count()) return {};
  const ROW& r = m_rows[row];
  return std::string_view(m_arena.data() + r.text_offset, r.text_length);
}

LUM_KRO_OUTPUT_TYPE_ENUM LUM_CONSOLE_MODEL::row_type(int row) const {
  if (row < 0 || row >= row_count()) return LUM_KRO_OUTPUT_STDOUT;
  return static_cast<LUM_KRO_OUTPUT_TYPE_ENUM>(m_rows[row].type);
}

int LUM_CONSOLE_MODEL::row_level(int row) const {
  return (row < 0 || row >= row_count()) ? 0 : m_rows[row].level;
}

int LUM_CONSOLE_MODEL::row_kind(int row) const {
  return (row < 0 || row >= row_count()) ? -1 : m_rows[row].kind;
}

const MSG_POST* LUM_CONSOLE_MODEL::row_message(int row) const {
  if (row < 0 || row >= row_count() || m_rows[row].message < 0) return nullptr;
  return m_messages[m_rows[row].message];
}

uint64_t LUM_CONSOLE_MODEL::store_text(std::string_view text, uint32_t* length) {
  uint64_t offset = m_arena.size();
  // Tabs become four blanks, as the console always showed them.
  if (text.find('\t') == std::string_view::npos) {
    m_arena.append(text.data(), text.size());
  } else {
    for (char c : text) {
      if (c == '\t')
        m_arena.append(4, ' ');
      else
        m_arena.push_back(c);
    }
  }
  uint64_t stored = m_arena.size() - offset;
  *length = static_cast<uint32_t>(std::min<uint64_t>(stored, UINT32_MAX));
  return offset;
}

int LUM_CONSOLE_MODEL::append_row(LUM_KRO_OUTPUT_TYPE_ENUM type, std::string_view text, int kind, int level,
                                  int message) {
  ROW r;
  r.text_offset = store_text(text, &r.text_length);
  r.message = message;
  r.type = static_cast<uint8_t>(type);
  r.kind = static_cast<int8_t>(kind);
  r.level = static_cast<uint16_t>(std::clamp(level, 0, 65535));
  m_rows.push_back(r);
  if (m_batch_depth == 0) announce_rows();
  return row_count() - 1;
}

void LUM_CONSOLE_MODEL::announce_rows() {
  int total = row_count();
  if (total <= m_announced_rows) return;
  beginInsertRows(QModelIndex(), m_announced_rows, total - 1);
  m_announced_rows = total;
  endInsertRows();
}

void LUM_CONSOLE_MODEL::begin_append() { ++m_batch_depth; }

void LUM_CONSOLE_MODEL::end_append() {
  if (m_batch_depth > 0 && --m_batch_depth == 0) announce_rows();
}

int LUM_CONSOLE_MODEL::add_prompt_row(LUM_KRO_OUTPUT_TYPE_ENUM type) { return append_row(type, {}, -1, 0, -1); }

int LUM_CONSOLE_MODEL::add_text_row(std::string_view text) {
  return append_row(LUM_KRO_OUTPUT_STDOUT, text, -1, 0, -1);
}

int LUM_CONSOLE_MODEL::add_text_rows(std::string_view text) {
  begin_append();
  int row = -1;
  for (;;) {
    const size_t end = text.find('\n');
    row = add_text_row(text.substr(0, end));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  end_append();
  return row;
}

std::string LUM_CONSOLE_MODEL::message_row_text(const MSG_POST& post) {
  std::string text = kind_label(post.get_kind());
  if (!post.get_id().empty()) {
    text += " (";
    text += post.get_id();
    text += ")";
  }
  text += ": ";
  text += post.get_text();
  return text;
}

int LUM_CONSOLE_MODEL::insert_message(const MSG_POST* post, int level) {
  if (post == nullptr) return -1;
  auto owner = std::make_shared<const MSG_POST>(*post);
  m_message_owners.push_back(owner);
  begin_append();
  // Walks the copy, so that every row's message pointer stays valid as long
  // as the rows exist.
  struct WALK {
    LUM_CONSOLE_MODEL* model;
    int add(const MSG_POST& m, int lvl) {
      int index = static_cast<int>(model->m_messages.size());
      model->m_messages.push_back(&m);
      int row = model->append_row(LUM_KRO_OUTPUT_MESSAGE, message_row_text(m), static_cast<int>(m.get_kind()), lvl,
                                  index);
      for (const MSG_POST& sub : m.get_sub_messages()) add(sub, lvl + 1);
      return row;
    }
  } walk{this};
  int row = walk.add(*owner, level);
  end_append();
  return row;
}

void LUM_CONSOLE_MODEL::set_row_text(int row, std::string_view text) {
  if (row < 0 || row >= row_count()) return;
  ROW& r = m_rows[row];
  r.text_offset = store_text(text, &r.text_length);
  if (row < m_announced_rows) {
    QModelIndex i = index(row);
    emit dataChanged(i, i, {Qt::DisplayRole});
  }
}

void LUM_CONSOLE_MODEL::clear() {
  beginResetModel();
  m_rows.clear();
  m_rows.shrink_to_fit();
  m_arena.clear();
  m_arena.shrink_to_fit();
  m_messages.clear();
  m_message_owners.clear();
  m_announced_rows = 0;
  endResetModel();
}

double LUM_CONSOLE_MODEL::bytes_per_row() const {
  if (m_rows.empty()) return 0.0;
  double bytes = static_cast<double>(m_rows.capacity() * sizeof(ROW) + m_arena.capacity() +
                                     m_messages.capacity() * sizeof(const MSG_POST*) +
                                     m_message_owners.capacity() * sizeof(std::shared_ptr<const MSG_POST>));
  for (const auto& owner : m_message_owners) {
    bytes += sizeof(MSG_POST) + owner->get_text().capacity() + owner->get_id().capacity();
  }
  return bytes / static_cast<double>(m_rows.size());
}
