// Seeded random fuzzing (tests/fuzz/FuzzDriver.hh) of the front end's
// readers of text it does not control: the table sort comparison, the
// classifier that turns engine output lines into front-end commands
// (gathering lines until a command is complete), the argument parser of the
// front end's commands, the steps file of the Tasks pane and the site menu
// files. Each target checks what must hold for any input, not only that
// nothing crashes.
#include "engine/lum_ipc_object.hh"
#include "frame/lum_frame_commands.hh"
#include "frame/lum_main_menu.hh"
#include "frame/lum_steps.hh"
#include "report/lum_lexcmp.hh"
#include "tcl/lum_tcl_args_auto.hh"

#include "platform/atcl.hh"
#include "platform/msg.hh"

#include "FuzzDriver.hh"

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>
#include <cstring>
#include <functional>
#include <tcl.h>

namespace {

int sign(int value) { return (value > 0) - (value < 0); }

std::vector<std::string> split_lines(const std::string& text) {
  std::vector<std::string> lines;
  size_t start = 0;
  for (;;) {
    size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) return lines;
    start = end + 1;
  }
}

bool starts_with(const std::string& text, const std::string& prefix) { return text.compare(0, prefix.size(), prefix) == 0; }

}  // namespace

TEST(LumFuzz, LexcmpIsAntisymmetricAndItsKeysAgree) {
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "lexcmp", [](const std::string& text) {
    std::string clean = text;
    clean.erase(std::remove(clean.begin(), clean.end(), '\0'), clean.end());
    size_t cut = clean.find('\n');
    std::string a = clean.substr(0, cut);
    std::string b = cut == std::string::npos ? std::string() : clean.substr(cut + 1);
    int ab = sign(lum_lexcmp(a.c_str(), b.c_str()));
    EXPECT_EQ(ab, -sign(lum_lexcmp(b.c_str(), a.c_str()))) << a << " | " << b;
    EXPECT_EQ(ab, sign(lum_sort_key(a).compare(lum_sort_key(b)))) << a << " | " << b;
    EXPECT_EQ(lum_lexcmp(a.c_str(), a.c_str()), 0) << a;
  });
}

namespace {

// Sees the commands the classifier forwards instead of queueing them.
class RECORDING_IPC : public LUM_IPC_OBJECT {
 public:
  std::vector<std::string> posted;

 protected:
  void post_command(const std::string& command, int /*lines*/) override { posted.push_back(command); }
};

}  // namespace

// Each input is the engine's output, one line per line. Whatever it holds,
// every forwarded command is one complete Tcl command that the front end's
// queue (a C string) receives whole, and it is one of the front end's own
// commands: a message post or internal error rewritten to this console's
// target, a prompt, an echo (alone or a batch of lines), a status, or a
// lum_ call-back. A prompt on a line of its own is recognised whenever no
// command is being gathered.
TEST(LumFuzz, EngineLinesBecomeWholeFrontEndCommandsOnly) {
  MSG_REPORT report;
  const std::string post = std::string(msg_tcl_post_cmd()) + " " + std::to_string(report.get_target_id()) + " ";
  const std::string error = std::string(msg_tcl_ie_cmd()) + " " + std::to_string(report.get_target_id()) + " ";
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "engine_lines", [&](const std::string& text) {
    RECORDING_IPC ipc;
    ipc.set_msg_target(&report);
    size_t fed = 0;
    const std::vector<std::string> lines = split_lines(text);
    for (const std::string& line : lines) {
      ipc.process_line(line);
      fed += line.size() + 1;
      EXPECT_LE(ipc.get_line_buffer_size(), fed + 64);
      if (line.size() % 7 == 0) ipc.block_delivered();  // the reader has read all there was
    }
    ipc.block_delivered();
    for (const std::string& command : ipc.posted) {
      EXPECT_EQ(command.find('\0'), std::string::npos) << "a NUL would cut the command short: " << command;
      EXPECT_TRUE(Tcl_CommandComplete(command.c_str())) << command;
      EXPECT_TRUE(starts_with(command, "lum_") || starts_with(command, post) || starts_with(command, error))
          << command;
    }
    // A last "echo_stdout {R" line is held to see whether a lone "}" follows:
    // if not, it is a command being gathered like any other.
    if (ipc.get_line_buffer_size() == 0 && !starts_with(lines.back(), "echo_stdout {")) {
      ipc.process_line("tcl> ");
      ASSERT_FALSE(ipc.posted.empty());
      EXPECT_EQ(ipc.posted.back(), "lum_tcl_prompt");
    }
  });
}

// Each input is a call, one word per line; the first word picks the
// command (its name, or any word for some command). A call either fails
// with a message that names the command and gives its usage, shows help,
// or succeeds with every required argument given, every integer and list
// value readable and no two arguments of an exclusive group.
TEST(LumFuzz, ArgumentParserAcceptsOnlyCompleteCallsAndExplainsRefusals) {
  Tcl_Interp* interp = atcl_get_interpreter();
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "arguments", [&](const std::string& text) {
    std::vector<std::string> words = split_lines(text);
    for (std::string& word : words) word.erase(std::remove(word.begin(), word.end(), '\0'), word.end());
    int number = -1;
    unsigned hash = 0;
    for (char c : words.front()) hash = hash * 31 + static_cast<unsigned char>(c);
    for (int i = 0; i < LUM_AUTO_COMMAND_COUNT; ++i)
      if (words.front() == lum_auto_get_definition(i)->command_name) number = i;
    if (number < 0) number = static_cast<int>(hash % LUM_AUTO_COMMAND_COUNT);
    const ATCL_CMD_DEFINITION* def = lum_auto_get_definition(number);
    ATCL_CMD* cmd = LUM_AUTO_MANAGER::get_instance().register_command(number, def);
    std::vector<const char*> argv;
    argv.push_back(def->command_name);
    for (size_t i = 1; i < words.size(); ++i) argv.push_back(words[i].c_str());
    ATCL_ARGS args(interp);
    bool help_shown = false;
    const int code = args.process_tcl_command_arguments(cmd, &help_shown, static_cast<int>(argv.size()), argv.data());
    const std::string result = Tcl_GetStringResult(interp);
    const std::string name = def->command_name;
    if (code == TCL_ERROR) {
      EXPECT_TRUE(starts_with(result, name + ": ")) << result;
      EXPECT_NE(result.find("Usage: " + name), std::string::npos) << result;
      return;
    }
    ASSERT_EQ(code, TCL_OK) << result;
    if (help_shown) {
      EXPECT_NE(result.find("Usage: " + name), std::string::npos) << result;
      return;
    }
    EXPECT_EQ(result, "");
    for (const ATCL_ARG_RECORD* r : cmd->get_arguments()) {
      if (!(r->attributes & ATCL_ARG_OPTIONAL)) {
        EXPECT_TRUE(args.is_given(r->enum_value)) << cmd->argument_name(r->enum_value);
      }
      if (!args.is_given(r->enum_value)) continue;
      bool given = false;
      std::vector<std::string> elements;
      if (r->kind == ATCL_ARG_INTEGER) {
        args.get_int_arg_option(r->enum_value, &given);
        EXPECT_TRUE(given);
      } else if (r->kind == ATCL_ARG_LIST) {
        EXPECT_TRUE(args.get_list_arg_option(r->enum_value, &elements));
      }
    }
    if (def->exclusive_groups)
      for (const int* const* group = def->exclusive_groups; *group; ++group) {
        int count = 0;
        for (const int* e = *group; *e; ++e) count += args.is_given(*e) ? 1 : 0;
        EXPECT_LE(count, 1);
      }
  });
}

// Each input is a steps file. It is refused with one line and no rows, or
// read into rows in document order (each row at most one level below the
// one before); a prerequisite is always a row above its step; and starting
// every step in turn, then draining the queue prompt by prompt, ends, with
// each queued row a row of the file and at most one action per prompt.
TEST(LumFuzz, StepsFileGivesOrderedRowsAndRunsThatEnd) {
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "steps", [](const std::string& text) {
    LUM_STEPS_FILE file = lum_parse_steps(text, "fuzz.xml");
    if (!file.error.empty()) {
      EXPECT_TRUE(file.rows.empty()) << file.error;
      EXPECT_EQ(file.error.find('\n'), std::string::npos) << file.error;
      return;
    }
    const int count = static_cast<int>(file.rows.size());
    for (int i = 0; i < count; ++i) {
      EXPECT_GE(file.rows[i].level, 0);
      if (i > 0) {
        EXPECT_LE(file.rows[i].level, file.rows[i - 1].level + 1) << i;
      }
      EXPECT_LT(lum_find_prereq_row(file.rows, i), i);
    }
    std::vector<bool> enabled(file.rows.size(), true);
    size_t actions = 0;
    LUM_STEP_RUNNER::ACTIONS hooks;
    hooks.run_menu = [&](const std::string&) { ++actions; };
    hooks.run_in_engine = [&](const std::string&) { ++actions; };
    hooks.run_in_front_end = [&](const std::string&) { ++actions; };
    hooks.panel_exists = [](const std::string& name) { return name.size() % 2 == 1; };
    hooks.open_panel = [&](const std::string&) { ++actions; };
    hooks.has_children = [&](int row) { return row + 1 < count && file.rows[row + 1].level > file.rows[row].level; };
    hooks.toggle_expansion = [&](int) { ++actions; };
    hooks.prereq_failed = [&](const std::string&) { ++actions; };
    LUM_STEP_RUNNER runner(&file.rows, &enabled, hooks);
    LUM_STEP_FLAGS flags;
    flags.project_is_open = '1';
    for (int i = 0; i < count; ++i) {
      LUM_STEP_STATE state = lum_step_state(&file.rows[i].param, flags, hooks.panel_exists);
      EXPECT_TRUE(state.status == LUM_STEP_NOT_DONE || state.status == LUM_STEP_OK || state.status == LUM_STEP_ERROR ||
                  state.status == LUM_STEP_OUT_OF_DATE)
          << state.status;
      runner.start(i);
      for (int row : runner.queue()) EXPECT_TRUE(row >= 0 && row < count) << row;
      // Every second step finishes, so runs both go on and stop at failures.
      if (runner.last_started() >= 0 && i % 2 == 0) file.rows[runner.last_started()].param.status = LUM_STEP_OK;
    }
    const size_t queued = runner.queue().size();
    for (size_t prompts = 0; !runner.queue().empty(); ++prompts) {
      ASSERT_LE(prompts, queued) << "the queue never drains";
      runner.start_next_task();
    }
    EXPECT_LE(actions, 3 * file.rows.size() + queued);
  });
}

// Each input is a site menu file. Merged into a menu bar with the usual
// menus, it adds at most the quick commands the identifier range holds;
// every quick-command entry it adds carries the identifier of one of them;
// each problem is one line; and composing an item's command from prompt
// fields never loses the text around its "$1"/"$2".
TEST(LumFuzz, MenuFileAddsOnlyQuickCommandsItCanIdentify) {
  if (qgetenv("QT_QPA_PLATFORM").isEmpty()) qputenv("QT_QPA_PLATFORM", "offscreen");
  int argc = 1;
  char name[] = "lum_fuzz_tests";
  char* argv[] = {name, nullptr};
  QApplication app(argc, argv);
  chronel_fuzz::run_target(CHRONEL_FUZZ_CORPUS, "menus", [](const std::string& text) {
    const std::string xml(text.c_str());  // the reader takes a C string
    QMenuBar bar;
    for (const char* title : {"&File", "&Edit", "&View", "&Reports", "&Tools", "&Help"}) bar.addMenu(title);
    LUM_MENU_FILES files;
    files.load_main_from_text(xml.c_str());
    files.merge_into(&bar, [](unsigned) {});
    const size_t items = files.get_menuitems().size();
    EXPECT_LE(items, static_cast<size_t>(LUM_ID_QUICK_COMMAND_MAX - LUM_ID_QUICK_COMMAND_MIN + 1));
    std::function<void(QMenu*, int)> visit = [&](QMenu* menu, int depth) {
      ASSERT_LT(depth, 1000);
      for (QAction* action : menu->actions()) {
        if (action->menu()) visit(action->menu(), depth + 1);
        bool numbered = false;
        const unsigned id = action->data().toUInt(&numbered);
        if (numbered && !action->isSeparator()) {
          EXPECT_GE(id, static_cast<unsigned>(LUM_ID_QUICK_COMMAND_MIN));
          EXPECT_LT(id - LUM_ID_QUICK_COMMAND_MIN, items);
        }
      }
    };
    for (QAction* top : bar.actions())
      if (top->menu()) visit(top->menu(), 0);
    for (const std::string& problem : files.get_problems()) EXPECT_EQ(problem.find('\n'), std::string::npos) << problem;
    for (const LUM_MENUITEM& item : files.get_menuitems()) {
      const std::string composed = lum_compose_quick_command(item.command, "<a>", "<b>", item.has_second_field);
      size_t dollars = 0;
      for (size_t i = 0; i + 1 < item.command.size(); ++i)
        if (item.command[i] == '$' && (item.command[i + 1] == '1' || (item.command[i + 1] == '2' && item.has_second_field)))
          ++dollars, ++i;
      EXPECT_EQ(composed.size(), item.command.size() + dollars) << item.command;
    }
  });
}
