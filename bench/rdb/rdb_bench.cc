// Prints the speed figures of the report database: writing a table panel of
// 1,000,000 x 8 cells, opening it and fetching the first screen of rows, and
// fetching random pages; then writing a path report panel of 5,400 paths,
// the engine's most object-heavy panel, split into adding and committing.
// It measures and prints; it does not judge.
//
//   rdb_bench [rows] [folder]         both cases
//   rdb_bench paths [paths] [runs]    only the path report, written `runs` times
#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {
using CLOCK = std::chrono::steady_clock;

double ms_since(CLOCK::time_point start) {
  return std::chrono::duration<double, std::milli>(CLOCK::now() - start).count();
}

// The texts a path report's cells hold, made before the clock starts: the
// engine has its cells ready when it writes them, so making them here would
// only blur the writer's figures.
struct PATH_CELLS {
  std::vector<std::string> numbers;  // "12.345"
  std::vector<std::string> pins;     // "u_core/stage3_reg[12]/Q"
  std::vector<std::string> cells;    // "DFFPOSX1"
  PATH_CELLS() {
    for (int i = 0; i < 997; ++i)
      numbers.push_back(std::to_string(i * 37 % 20000 / 1000) + "." +
                        std::to_string(100 + i * 7919 % 900));
    for (int i = 0; i < 1000; ++i)
      pins.push_back("u_core/stage" + std::to_string(i % 9) + "_reg[" + std::to_string(i % 64) +
                     "]/" + (i % 2 ? "Q" : "D"));
    for (const char* name : {"DFFPOSX1", "NAND2X1", "INVX2", "AOI21X1", "BUFX4", "XOR2X1"})
      cells.push_back(name);
  }
};

struct PATH_FIGURES {
  int64_t objects = 0;
  double add_ms = 0, commit_ms = 0;
  double open_close_ms = 0;  // opening the file before and closing it after
};

// One panel shaped like the engine's path report: a summary table with a
// row per path, and per path a path object with its summary (11 x 2,
// headerless), its delay chart (2 rows), its arrival (about 40 x 7) and
// required (about 6 x 7) tables.
// The engine opens the file for each report and closes it after: so does
// this, and closing may copy the write-ahead log into the database.
PATH_FIGURES write_path_panel(const std::string& file, int paths, const PATH_CELLS& texts) {
  static const std::vector<std::string> summary_columns = {
      "Slack", "From Node", "To Node", "Launch Clock", "Latch Clock", "Relationship",
      "Clock Skew", "Data Delay"};
  static const std::vector<std::string> point_columns = {"Total", "Incr", "RF", "Type",
                                                         "Fanout", "Location", "Element"};
  static const std::vector<std::string> property_columns = {"Property", "Value"};
  static const char* property_names[] = {
      "Slack", "From Node", "To Node", "Launch Clock", "Latch Clock", "Check",
      "Data Arrival Time", "Data Required Time", "Relationship", "Clock Skew", "Data Delay"};
  const RDB_CELL_COLOR red{0, 0xff0000, RDB_NO_COLOR};
  auto number = [&](size_t i) -> const std::string& {
    return texts.numbers[i % texts.numbers.size()];
  };
  auto pin = [&](size_t i) -> const std::string& { return texts.pins[i % texts.pins.size()]; };

  PATH_FIGURES figures;
  auto opening = CLOCK::now();
  std::optional<RDB_WRITER> writer(std::in_place, file, RDB_TIMING_REPORT);
  auto start = CLOCK::now();
  figures.open_close_ms = std::chrono::duration<double, std::milli>(start - opening).count();
  RDB_PANEL_WRITER panel = writer->begin_panel("Paths (Setup)", "report_timing -npaths 5400");
  RDB_TABLE_WRITER summary = panel.add_table("Summary of Paths", RDB_KIND_TABLE, summary_columns);
  figures.objects = 2;
  for (int p = 1; p <= paths; ++p) {
    bool violated = p % 3 == 0;
    std::string_view row[8] = {number(p), pin(p), pin(p * 7), "clk", "clk", "10.000",
                               number(p * 3), number(p * 5)};
    summary.add_row(row, 8, &red, violated ? 1 : 0);

    const std::string where = "Path " + std::to_string(p);
    panel.add_path(where, -0.001 * p, violated);
    RDB_TABLE_WRITER properties = panel.add_path_table(
        where, RDB_PATH_PART::SUMMARY, property_columns, RDB_KIND_HEADERLESS_TABLE);
    for (int i = 0; i < 11; ++i) {
      std::string_view cells[2] = {property_names[i],
                                   i == 1 || i == 2 ? pin(p + i) : number(p + i)};
      RDB_CELL_COLOR slack_color{1, 0xff0000, RDB_NO_COLOR};
      properties.add_row(cells, 2, &slack_color, i == 0 && violated ? 1 : 0);
    }
    panel.add_path_chart(where, "Delay Type", "Delay (ps)", 2,
                         {{"Cell Delay", 1000 + p % 500}, {"Interconnect Delay", 200 + p % 90}});
    for (RDB_PATH_PART part : {RDB_PATH_PART::ARRIVAL, RDB_PATH_PART::REQUIRED}) {
      RDB_TABLE_WRITER table = panel.add_path_table(where, part, point_columns);
      int rows = part == RDB_PATH_PART::ARRIVAL ? 30 + p % 21 : 4 + p % 5;
      for (int r = 0; r < rows; ++r) {
        size_t k = static_cast<size_t>(p) * 64 + r;
        std::string_view cells[7] = {number(k), number(k * 3), r % 2 ? "R" : "F",
                                     r % 2 ? "CELL" : "IC", r % 2 ? "3" : "",
                                     texts.cells[k % texts.cells.size()], pin(k)};
        table.add_row(cells, 7);
      }
    }
    figures.objects += 5;
  }
  auto committing = CLOCK::now();
  figures.add_ms = std::chrono::duration<double, std::milli>(committing - start).count();
  panel.commit();
  auto closing = CLOCK::now();
  figures.commit_ms = std::chrono::duration<double, std::milli>(closing - committing).count();
  writer.reset();
  figures.open_close_ms += ms_since(closing);
  return figures;
}

int run_path_report(const std::string& file, int paths, int runs) {
  PATH_CELLS texts;
  double best = 0;
  for (int run = 1; run <= runs; ++run) {
    PATH_FIGURES f = write_path_panel(file, paths, texts);
    double total = f.add_ms + f.commit_ms;
    std::printf("path report of %d paths (%lld objects)%s: %.1f ms = add %.1f + commit %.1f, "
                "%.0f objects/s; opening and closing the file %.1f ms\n",
                paths, static_cast<long long>(f.objects), run == 1 ? ", new file" : ", replacing",
                total, f.add_ms, f.commit_ms, f.objects / (total / 1000.0), f.open_close_ms);
    if (run == 1 || total < best)
      best = total;
  }
  std::printf("path report best of %d: %.1f ms\n", runs, best);
  std::error_code ec;
  uintmax_t wal = std::filesystem::file_size(file + "-wal", ec);
  std::printf("path report file size: %.1f MB, write-ahead log %.1f MB\n",
              std::filesystem::file_size(file) / 1e6, ec ? 0.0 : wal / 1e6);
  return 0;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc > 1 && std::string(argv[1]) == "paths") {
    const int paths = argc > 2 ? std::atoi(argv[2]) : 5400;
    const int runs = argc > 3 ? std::atoi(argv[3]) : 5;
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("rdb_bench_" + std::to_string(getpid()));
    std::filesystem::remove_all(folder);
    try {
      run_path_report(rdb_report_file_path(folder.string(), "paths", RDB_TIMING_REPORT), paths,
                      runs < 1 ? 1 : runs);
    } catch (const std::exception& error) {
      std::fprintf(stderr, "rdb_bench: %s\n", error.what());
      return 1;
    }
    std::filesystem::remove_all(folder);
    return 0;
  }
  const int64_t rows = argc > 1 ? std::atoll(argv[1]) : 1000000;
  const int columns = 8;
  const int screen = 60;
  std::filesystem::path folder =
      argc > 2 ? std::filesystem::path(argv[2])
               : std::filesystem::temp_directory_path() / ("rdb_bench_" + std::to_string(getpid()));
  std::filesystem::remove_all(folder);
  const std::string file = rdb_report_file_path(folder.string(), "bench", RDB_TIMING_REPORT);

  try {
    auto start = CLOCK::now();
    {
      RDB_WRITER writer(file, RDB_TIMING_REPORT);
      RDB_PANEL_WRITER panel = writer.begin_panel("Big Table", "report_big_table");
      std::vector<std::string> titles;
      for (int c = 0; c < columns; ++c)
        titles.push_back("Column " + std::to_string(c));
      RDB_TABLE_WRITER table = panel.add_table("", RDB_KIND_TABLE, titles);
      std::string cells[columns];
      std::string_view views[columns];
      RDB_CELL_COLOR red{7, 0xff0000, RDB_NO_COLOR};
      for (int64_t r = 0; r < rows; ++r) {
        cells[0] = "u_core/u_alu/reg_" + std::to_string(r) + "/D";
        cells[1] = "clk";
        for (int c = 2; c < columns; ++c)
          cells[c] = std::to_string((r * 7919 + c * 104729) % 100000 / 1000.0);
        for (int c = 0; c < columns; ++c)
          views[c] = cells[c];
        // Every tenth row carries a colour, as violated rows would.
        table.add_row(views, columns, &red, r % 10 == 0 ? 1 : 0);
      }
      panel.commit();
    }
    double write_ms = ms_since(start);
    double cells_per_s = rows * columns / (write_ms / 1000.0);
    std::printf("write %lld x %d table panel: %.0f ms, %.0f cells/s (target >= 1000000)\n",
                static_cast<long long>(rows), columns, write_ms, cells_per_s);

    start = CLOCK::now();
    std::unique_ptr<RDB_REPORT> report = RDB_REPORT::open(file);
    auto* table = dynamic_cast<RDB_TABLE_OBJECT*>(report->find_object("Big Table"));
    if (!table) {
      std::fprintf(stderr, "the panel was not found\n");
      return 1;
    }
    auto first = table->get_rows(0, screen);
    double open_ms = ms_since(start);
    std::printf("open and fetch the first %d rows: %.2f ms (target < 50 ms); first cell \"%s\"\n",
                screen, open_ms, first.size() > 1 ? first[1].cells[0].c_str() : "");

    std::mt19937_64 random(42);
    const int samples = 200;
    double total_ms = 0;
    std::vector<double> times;
    for (int i = 0; i < samples; ++i) {
      int row = static_cast<int>(random() % static_cast<uint64_t>(rows));
      start = CLOCK::now();
      auto page = table->get_rows(row, screen);
      double ms = ms_since(start);
      total_ms += ms;
      times.push_back(ms);
      if (i == 0)
        std::printf("first random screen (cold b-tree): %.3f ms\n", ms);
      if (page.empty())
        std::printf("empty page at row %d\n", row);
    }
    std::sort(times.begin(), times.end());
    std::printf("fetch a random screen of %d rows: %.3f ms average, median %.3f, 95th percentile "
                "%.3f, worst %.3f over %d (target < 5 ms)\n",
                screen, total_ms / samples, times[samples / 2], times[samples * 95 / 100],
                times.back(), samples);

    report.reset();
    uintmax_t size = std::filesystem::file_size(file);
    std::error_code ec;
    uintmax_t wal = std::filesystem::file_size(file + "-wal", ec);
    std::printf("file size: %.1f MB (%.1f bytes per cell)%s\n", size / 1e6,
                static_cast<double>(size) / (rows * columns),
                ec ? "" : (", write-ahead log " + std::to_string(wal / 1000000) + " MB").c_str());

    run_path_report(rdb_report_file_path(folder.string(), "paths", RDB_TIMING_REPORT), 5400, 3);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "rdb_bench: %s\n", error.what());
    return 1;
  }
  std::filesystem::remove_all(folder);
  return 0;
}
