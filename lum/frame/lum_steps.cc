#include "frame/lum_steps.hh"

#include <tinyxml2.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

namespace {

using tinyxml2::XMLElement;

// The text of an element whose first child is a text node; empty otherwise.
std::string text_of(const XMLElement* element) {
  if (element == nullptr || element->FirstChild() == nullptr || element->FirstChild()->ToText() == nullptr)
    return {};
  const char* text = element->FirstChild()->Value();
  return text != nullptr ? text : "";
}

std::string attribute_of(const XMLElement* element, const char* name) {
  const char* value = element != nullptr ? element->Attribute(name) : nullptr;
  return value != nullptr ? value : "";
}

// Every two-character sequence backslash-n becomes a line break.
std::string with_line_breaks(const std::string& text) {
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n') {
      out += '\n';
      ++i;
    } else {
      out += text[i];
    }
  }
  return out;
}

int action_type_of(const std::string& type) {
  if (type == "menu") return LUM_STEP_ACTION_MENU;
  if (type == "tcl") return LUM_STEP_ACTION_TCL;
  if (type == "open_report_panel") return LUM_STEP_ACTION_OPEN_REPORT_PANEL;
  if (type == "run_steps") return LUM_STEP_ACTION_RUN_STEPS;
  return LUM_STEP_ACTION_NONE;
}

bool picture_of(const std::string& type, LUM_STEP_PICTURE* picture) {
  static const std::map<std::string, LUM_STEP_PICTURE> names = {
      {"checkbox_checked", LUM_STEP_PICTURE::CHECKBOX_CHECKED},
      {"checkbox_unchecked", LUM_STEP_PICTURE::CHECKBOX_UNCHECKED},
      {"radiobutton_hollow", LUM_STEP_PICTURE::RADIOBUTTON_HOLLOW},
      {"radiobutton_filled", LUM_STEP_PICTURE::RADIOBUTTON_FILLED}};
  auto it = names.find(type);
  if (it == names.end()) return false;
  *picture = it->second;
  return true;
}

LUM_STEP_BITMAP bitmap_of(const std::string& text) {
  if (text == "dialog_box") return LUM_STEP_BITMAP::DIALOG_BOX;
  if (text == "task_start") return LUM_STEP_BITMAP::TASK_START;
  if (text == "report_table") return LUM_STEP_BITMAP::REPORT_TABLE;
  if (text == "open_project") return LUM_STEP_BITMAP::OPEN_PROJECT;
  return LUM_STEP_BITMAP::NONE;
}

// Adds the "step" children of one element at one level below the last row
// already read, then the substeps of each right after it.
void populate(const XMLElement* parent, std::vector<LUM_STEP_ROW>* rows) {
  const int level = rows->empty() ? 0 : rows->back().level + 1;
  // The picture of a step without a known "icon" is the one of the step
  // before it in this list.
  LUM_STEP_PICTURE picture = LUM_STEP_PICTURE::BLANK;
  for (const XMLElement* step = parent->FirstChildElement(); step != nullptr; step = step->NextSiblingElement()) {
    if (std::string(step->Name()) != "step") continue;
    const XMLElement* name = step->FirstChildElement("name");
    if (name == nullptr) continue;
    LUM_STEP_ROW row;
    row.name = text_of(name);
    row.level = level;
    row.bold = step->FirstChildElement("bold") != nullptr;
    if (const XMLElement* action = step->FirstChildElement("action")) {
      row.param.action_text = text_of(action);
      row.param.action_type = action_type_of(attribute_of(action, "type"));
      if (row.param.action_type == LUM_STEP_ACTION_TCL) {
        const std::string run_in = attribute_of(action, "run_in");
        if (run_in == "sta") row.param.run_in = LUM_STEP_RUN_IN_STA;
        else if (run_in == "lum") row.param.run_in = LUM_STEP_RUN_IN_LUM;
      }
      if (row.param.action_type == LUM_STEP_ACTION_RUN_STEPS)
        for (const XMLElement* id = action->FirstChildElement("id"); id; id = id->NextSiblingElement("id"))
          row.param.run_step_ids.push_back(text_of(id));
    }
    row.param.info = with_line_breaks(text_of(step->FirstChildElement("info")));
    if (const XMLElement* color = step->FirstChildElement("color")) {
      const std::string rgb = attribute_of(color, "RGB");
      char* end = nullptr;
      const unsigned long value = std::strtoul(rgb.c_str(), &end, 16);
      if (rgb.size() == 6 && end == rgb.c_str() + rgb.size()) {
        row.has_color = true;
        row.color = static_cast<unsigned>(value);
      }
    }
    if (const XMLElement* icon = step->FirstChildElement("icon")) picture_of(attribute_of(icon, "type"), &picture);
    row.picture = picture;
    row.bitmap = bitmap_of(text_of(step->FirstChildElement("item_bitmap")));
    row.properties = step->FirstChildElement("properties") != nullptr;
    if (const XMLElement* status = step->FirstChildElement("status_ok_if")) {
      row.param.status_kind =
          attribute_of(status, "type") == "report_panel_exists" ? LUM_STEP_STATUS_REPORT_PANEL : LUM_STEP_STATUS_FLAG;
      row.param.status_condition = text_of(status);
    }
    row.param.id = text_of(step->FirstChildElement("id"));
    row.param.prereq = text_of(step->FirstChildElement("prereq"));
    row.collapsed = text_of(step->FirstChildElement("collapsed")) == "true";
    rows->push_back(std::move(row));
    if (const XMLElement* substeps = step->FirstChildElement("substeps")) populate(substeps, rows);
  }
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

// Prerequisites that cannot work: ids that name no step, prerequisites placed
// after their step, and cycles among the ids (each cycle once).
std::vector<std::string> check_steps(const std::vector<LUM_STEP_ROW>& rows, const std::string& file_name) {
  std::vector<std::string> problems;
  std::map<std::string, int> first_row_of;
  for (int i = 0; i < static_cast<int>(rows.size()); ++i)
    if (!rows[i].param.id.empty()) first_row_of.emplace(rows[i].param.id, i);
  const std::string where = file_name + ": step ";
  for (int i = 0; i < static_cast<int>(rows.size()); ++i) {
    const LUM_STEP_PARAM& p = rows[i].param;
    if (!p.prereq.empty() && lum_find_prereq_row(rows, i) < 0) {
      if (first_row_of.count(p.prereq) == 0)
        problems.push_back(where + quoted(rows[i].name) + ": prerequisite " + quoted(p.prereq) + " names no step");
      else
        problems.push_back(where + quoted(rows[i].name) + ": prerequisite " + quoted(p.prereq) +
                           " is not above it and is never run first");
    }
    for (const std::string& id : p.run_step_ids)
      if (first_row_of.count(id) == 0)
        problems.push_back(where + quoted(rows[i].name) + ": run_steps id " + quoted(id) + " names no step");
  }
  // Cycles: follow each id's prerequisite chain; a chain that comes back to
  // an id already on it is a cycle, reported from its smallest member.
  std::set<std::string> reported;
  for (const auto& [start, unused] : first_row_of) {
    std::vector<std::string> chain;
    std::string id = start;
    while (true) {
      auto found = std::find(chain.begin(), chain.end(), id);
      if (found != chain.end()) {
        std::vector<std::string> cycle(found, chain.end());
        const auto smallest = std::min_element(cycle.begin(), cycle.end());
        std::rotate(cycle.begin(), smallest, cycle.end());
        std::string text;
        for (const std::string& member : cycle) text += quoted(member) + " -> ";
        text += quoted(cycle.front());
        if (reported.insert(text).second) problems.push_back(file_name + ": prerequisites form a cycle: " + text);
        break;
      }
      auto row = first_row_of.find(id);
      if (row == first_row_of.end() || rows[row->second].param.prereq.empty()) break;
      chain.push_back(id);
      id = rows[row->second].param.prereq;
    }
  }
  return problems;
}

}  // namespace

LUM_STEPS_FILE lum_parse_steps(const std::string& xml, const std::string& file_name) {
  LUM_STEPS_FILE result;
  tinyxml2::XMLDocument document;
  if (document.Parse(xml.data(), xml.size()) != tinyxml2::XML_SUCCESS) {
    result.error = file_name + " is not valid XML (line " + std::to_string(document.ErrorLineNum()) +
                   "): no steps are shown";
    return result;
  }
  const XMLElement* root = document.FirstChildElement();
  if (root == nullptr) {
    result.error = file_name + " holds no element: no steps are shown";
    return result;
  }
  populate(root, &result.rows);
  result.problems = check_steps(result.rows, file_name);
  return result;
}

LUM_STEPS_FILE lum_load_steps_file(const std::string& path) {
  const std::string file_name = path.substr(path.find_last_of('/') + 1);
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    LUM_STEPS_FILE result;
    result.error = "The steps file " + file_name + " could not be read: no steps are shown";
    return result;
  }
  std::stringstream text;
  text << in.rdbuf();
  return lum_parse_steps(text.str(), file_name);
}

LUM_STEP_STATE lum_step_state(const LUM_STEP_PARAM* param, const LUM_STEP_FLAGS& flags,
                              const std::function<bool(const std::string&)>& panel_exists) {
  LUM_STEP_STATE state;
  state.enabled = flags.project_is_open == '1' && !flags.busy;
  if (param == nullptr || param->status_condition.empty()) return state;
  const std::string& condition = param->status_condition;
  if (param->status_kind == LUM_STEP_STATUS_REPORT_PANEL) {
    if (panel_exists && panel_exists(condition))
      state.status = flags.netlist_is_up_to_date == '1' ? LUM_STEP_OK : LUM_STEP_OUT_OF_DATE;
    return state;
  }
  char flag = '\0';
  if (condition == "project_is_open") {
    state.status = flags.project_is_open == '1' ? LUM_STEP_OK : LUM_STEP_NOT_DONE;
    state.enabled = !flags.busy;
    return state;
  }
  if (condition == "netlist_is_created") flag = flags.netlist_is_created;
  else if (condition == "sdc_file_is_loaded") flag = flags.sdc_file_is_loaded;
  else if (condition == "netlist_is_up_to_date") flag = flags.netlist_is_up_to_date;
  else return state;
  state.status = flag == '1' ? LUM_STEP_OK : flag == 'e' ? LUM_STEP_ERROR : LUM_STEP_NOT_DONE;
  return state;
}

int lum_find_prereq_row(const std::vector<LUM_STEP_ROW>& rows, int row) {
  if (row < 0 || row >= static_cast<int>(rows.size())) return -1;
  const std::string& prereq = rows[row].param.prereq;
  if (prereq.empty()) return -1;
  for (int above = row - 1; above >= 0; --above)
    if (rows[above].param.id == prereq) return above;
  return -1;
}

bool lum_menu_text_matches(const std::string& item_text, const std::string& wanted) {
  auto without_ampersands = [](const std::string& text) {
    std::string out;
    for (char c : text)
      if (c != '&') out += c;
    return out;
  };
  std::string item = without_ampersands(item_text);
  const size_t tab = item.find('\t');
  if (tab != std::string::npos && tab != 0) item.resize(tab);
  return item == without_ampersands(wanted);
}

// ---- the runner ------------------------------------------------------------------------

LUM_STEP_RUNNER::LUM_STEP_RUNNER(std::vector<LUM_STEP_ROW>* rows, std::vector<bool>* enabled, ACTIONS actions)
    : m_rows(rows), m_enabled(enabled), m_actions(std::move(actions)) {}

void LUM_STEP_RUNNER::start(int row) {
  if (!valid(row) || row >= static_cast<int>(m_enabled->size()) || !(*m_enabled)[row]) return;
  do_prereq(row);
  const int action = (*m_rows)[row].param.action_type;
  if (action == LUM_STEP_ACTION_MENU || action == LUM_STEP_ACTION_TCL) {
    m_queue.push_back(row);
  } else if (action == LUM_STEP_ACTION_OPEN_REPORT_PANEL || action == LUM_STEP_ACTION_NONE) {
    if (m_actions.has_children && m_actions.has_children(row) && m_actions.toggle_expansion)
      m_actions.toggle_expansion(row);
  }
  start_next_task();
}

void LUM_STEP_RUNNER::do_prereq(int row) {
  // Each call moves strictly upwards, so a chain ends even when the file's
  // ids form a cycle.
  const int prereq = lum_find_prereq_row(*m_rows, row);
  if (prereq < 0 || (*m_rows)[prereq].param.status == LUM_STEP_OK) return;
  m_queue.push_front(prereq);
  do_prereq(prereq);
}

void LUM_STEP_RUNNER::start_next_task() {
  if (m_queue.empty()) return;
  const int row = m_queue.front();
  m_queue.pop_front();
  if (!valid(row)) return;
  const LUM_STEP_PARAM& param = (*m_rows)[row].param;
  // Already done by the time its turn came: dropped, the rest waits for the next prompt.
  if (param.status == LUM_STEP_OK) return;
  const int prereq = lum_find_prereq_row(*m_rows, row);
  if (prereq >= 0 && (*m_rows)[prereq].param.status != LUM_STEP_OK) {
    // The step before it ran and did not succeed: nothing more of this run.
    m_queue.clear();
    if (m_actions.prereq_failed) m_actions.prereq_failed((*m_rows)[prereq].param.status_condition);
    return;
  }
  m_last_started = row;
  switch (param.action_type) {
    case LUM_STEP_ACTION_MENU:
      if (m_actions.run_menu) m_actions.run_menu(param.action_text);
      break;
    case LUM_STEP_ACTION_TCL:
      if (param.run_in == LUM_STEP_RUN_IN_LUM) {
        if (m_actions.run_in_front_end) m_actions.run_in_front_end(param.action_text);
      } else if (m_actions.run_in_engine) {
        m_actions.run_in_engine(param.action_text);
      }
      break;
    case LUM_STEP_ACTION_OPEN_REPORT_PANEL: {
      const bool exists = m_actions.panel_exists && m_actions.panel_exists(param.action_text);
      if (!param.prereq.empty() && !exists) break;
      if (m_actions.open_panel) m_actions.open_panel(param.action_text);
      break;
    }
    default:
      break;
  }
}
