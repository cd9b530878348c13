// Timing paths, domain summaries and clock transfers computed from OpenSTA.
//
// Everything here reads the timing graph through OpenSTA's C++ interface
// (Sta::findPathEnds, PathEnd, the predecessor of a path point) instead of its Tcl reports,
// because the report panels need numbers per point that the Tcl reports only
// print: the required time at each point of the capture clock path, the
// cell/interconnect split of the delay, the fanout of each driver. The
// results are plain records (ReportRecords.hh).
//
// Names in queries are resolved by NodeNames; an unknown name throws
// ReportError, and nothing is computed.
#pragma once

#include "reports/PathExpansion.hh"
#include "reports/ReportRecords.hh"

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace sta {
class Sta;
class PathEnd;
class Pin;
}

namespace vexa {

// A bad report request (unknown name, bad count). The message is meant for
// the user as it stands.
class ReportError : public std::runtime_error
{
public:
  using std::runtime_error::runtime_error;
};

// Time conversion between OpenSTA's seconds and the netlist's time unit.
class TimeUnit
{
public:
  explicit TimeUnit(const sta::Sta *sta);
  double to_user(double seconds) const { return seconds / m_scale; }
  double to_sta(double user) const { return user * m_scale; }
  // "ns", "ps", ...
  const std::string &name() const { return m_name; }

private:
  double m_scale = 1e-9;
  std::string m_name = "ns";
};

// The worst paths matching `query`, worst slack first, at most npaths.
std::vector<TimingPathRecord> find_timing_paths(sta::Sta *sta, const PathQuery &query);

// The same paths handed to `visit` one at a time, so that a report of ten
// thousand paths never holds them all. Names are resolved (and ReportError
// thrown) before the first call of `prepared`, which runs once the search is
// done and before the first path; `visit` may keep the record it is given.
void for_each_timing_path(sta::Sta *sta, const PathQuery &query,
                          const std::function<void(size_t count)> &prepared,
                          const std::function<void(TimingPathRecord &&)> &visit);

// What a report of many paths looks up again and again, kept for the length
// of that report: what the point tables show of each pin (name, library cell,
// fanout) and the predecessor of each path point. The paths of one report
// share most of their pins and points.
class PathReportCache
{
public:
  struct PinInfo
  {
    std::string name;
    std::string location;
    int fanout = 0;
  };
  // `expected_points`: a guess of the distinct path points the report will
  // meet, to size the look-up tables once.
  explicit PathReportCache(const sta::Sta *sta, size_t expected_points = 0);
  ~PathReportCache();
  const PinInfo &pin(const sta::Pin *pin);
  // The pin of point `index` of a path laid out from this cache.
  const PinInfo &point_pin(ExpandedPath &path, size_t index);
  // A text that outlives the cache as long as a record holds texts().
  std::string_view text(std::string_view text);
  // What path records hold to keep the names and texts of this cache.
  std::shared_ptr<const void> texts() const { return m_texts; }
  PrevPathCache &prev_paths() { return m_prev_paths; }
  // Storage reused from path to path.
  ExpandedPath &data_path() { return m_data_path; }
  ExpandedPath &clock_path() { return m_clock_path; }
  ExpandedPath &launch_clock_path() { return m_launch_clock_path; }
  ExpandedPath &source_clock_path() { return m_source_clock_path; }

private:
  PinInfo make_info(const sta::Pin *pin) const;
  std::uint32_t pin_entry(const sta::Pin *pin);

  struct Texts
  {
    // Pins met so far (a deque: the names never move).
    std::deque<PinInfo> pins;
    std::unordered_set<std::string> texts;
  };
  const sta::Sta *m_sta;
  std::shared_ptr<Texts> m_texts;
  // The pins met so far, found through their vertex number (one array
  // probe; a hash of tens of thousands of nodes cost more than the names).
  // Pins without a vertex are kept by address.
  ZeroedArray<std::uint32_t> m_pin_by_vertex;  // index in pins + 1, 0 when not met
  std::unordered_map<const sta::Pin *, size_t> m_pins_without_vertex;
  PrevPathCache m_prev_paths;
  ExpandedPath m_data_path;
  ExpandedPath m_clock_path;
  ExpandedPath m_launch_clock_path;
  ExpandedPath m_source_clock_path;
};

// The record of one path end (exposed for tests and for other reports).
// Pass a cache shared by the paths of one report to save name look-ups.
// Without routing the load pins of the data path are left out of the
// arrival points (see PathQuery::with_routing).
TimingPathRecord make_path_record(sta::Sta *sta, sta::PathEnd *end, Analysis analysis,
                                  bool with_points, PathReportCache *cache = nullptr,
                                  bool with_routing = true);

// Worst slack and total negative slack per capture clock for one analysis,
// in clock order. Clocks without checked end points are left out.
std::vector<DomainSummaryRow> domain_summary(sta::Sta *sta, Analysis analysis);

// The worst slack of every checked end point of one analysis whose capture
// clock is `clock` (all clocks when empty), in no particular order.
std::vector<double> endpoint_slacks(sta::Sta *sta, Analysis analysis, const std::string &clock);

// One row per launch/capture clock pair that has paths in any analysis,
// counting checked end points per analysis.
std::vector<ClockTransferRow> clock_transfers(sta::Sta *sta);

// The display name of a pin ("u1/A", "clk").
std::string pin_display_name(const sta::Sta *sta, const sta::Pin *pin);

} // namespace vexa
