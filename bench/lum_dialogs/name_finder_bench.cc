// Figures of the name finder (run offscreen: QT_QPA_PLATFORM=offscreen):
//   - from the engine's last answer of a search of N names (default 200,000)
//     until the sorted list is filled and its first rows are painted;
//   - filtering that list as a pattern is typed, per keystroke (filter, model
//     reset and repaint), mean and worst.
// The engine is a stand-in that answers the hidden commands from memory, so
// the figures are the window's own.
// Usage: name_finder_bench [names]
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTableView>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "dialogs/lum_name_finder_dlg.hh"

int main(int argc, char** argv) {
  const size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 200000;
  QApplication app(argc, argv);

  // Register pins of a hierarchical design, in the engine's (unsorted) order.
  std::vector<std::string> names;
  names.reserve(count);
  std::mt19937 random(7);
  const char* blocks[] = {"u_core/u_alu", "u_core/u_mul", "u_io/u_rx", "u_io/u_tx", "u_mem/u_ctl"};
  for (size_t i = 0; i < count; ++i)
    names.push_back(std::string(blocks[random() % 5]) + "/reg_" + std::to_string(random() % 100000) + "[" +
                    std::to_string(i % 32) + "]/" + (i % 2 ? "D" : "Q"));

  QElapsedTimer clock;
  qint64 answered_at = 0;
  LUM_NAME_FINDER_DLG::set_hidden_runner([&](const std::string& command) -> std::vector<std::string> {
    if (command.rfind("llength", 0) == 0) return {std::to_string(names.size())};
    size_t first = 0, last = 0;
    if (std::sscanf(command.c_str(), "foreach_in_collection a [lrange $::lum_name_finder_matches %zu %zu]", &first,
                    &last) != 2)
      return {};
    std::vector<std::string> page(names.begin() + static_cast<long>(first),
                                  names.begin() + static_cast<long>(std::min(last + 1, names.size())));
    answered_at = clock.nsecsElapsed();
    return page;
  });

  LUM_NAME_FINDER_DLG dialog(nullptr);
  dialog.show();
  if (!QTest::qWaitForWindowExposed(&dialog)) std::printf("(the window was not exposed)\n");
  QTableView* view = dialog.get_matches_view();

  clock.start();
  dialog.on_click_list();
  view->viewport()->repaint();
  const double fill_ms = (clock.nsecsElapsed() - answered_at) / 1e6;
  const double search_ms = clock.nsecsElapsed() / 1e6;
  std::printf("name finder, %zu names\n", names.size());
  std::printf("  list filled and first rows painted after the last answer: %.1f ms (whole search with the stand-in engine %.1f ms)\n",
              fill_ms, search_ms);
  std::printf("  rows listed: %d\n", view->model()->rowCount());

  auto* pattern = dialog.findChild<QLineEdit*>("pattern");
  pattern->selectAll();
  QTest::keyClick(pattern, Qt::Key_Delete);
  const QString typed = "*u_alu/reg_12*D";
  double worst = 0, total = 0;
  for (QChar c : typed) {
    QElapsedTimer key;
    key.start();
    QTest::keyClick(pattern, c.toLatin1());
    view->viewport()->repaint();
    const double ms = key.nsecsElapsed() / 1e6;
    worst = std::max(worst, ms);
    total += ms;
  }
  std::printf("  filtering as \"%s\" is typed: mean %.1f ms, worst %.1f ms per keystroke (%d rows left)\n",
              typed.toUtf8().constData(), total / typed.size(), worst, view->model()->rowCount());
  return 0;
}
