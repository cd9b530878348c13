// Prints the speed figures of the report database: writing a table panel of
// 1,000,000 x 8 cells, opening it and fetching the first screen of rows, and
// fetching random pages. It measures and prints; it does not judge.
//
//   rdb_bench [rows] [folder]
#include "rdb/rdb_report.hh"
#include "rdb/rdb_writer.hh"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <unistd.h>
#include <string>

namespace {
using CLOCK = std::chrono::steady_clock;

double ms_since(CLOCK::time_point start) {
  return std::chrono::duration<double, std::milli>(CLOCK::now() - start).count();
}
}  // namespace

int main(int argc, char** argv) {
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
  } catch (const std::exception& error) {
    std::fprintf(stderr, "rdb_bench: %s\n", error.what());
    return 1;
  }
  std::filesystem::remove_all(folder);
  return 0;
}
