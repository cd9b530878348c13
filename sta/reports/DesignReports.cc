#include "reports/DesignReports.hh"

#include "reports/NodeNames.hh"
#include "reports/PathFinder.hh"

#include "Machine.hh"
#include "Clock.hh"
#include "TimingArc.hh"
#include "SdcClass.hh"
#include "Corner.hh"
#include "CheckMinPulseWidths.hh"
#include "Graph.hh"
#include "GraphDelayCalc.hh"
#include "MinMax.hh"
#include "Network.hh"
#include "PatternMatch.hh"
#include "Sdc.hh"
#include "Sta.hh"
#include "TimingRole.hh"
#include "Transition.hh"

#include <tcl.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <cstdlib>

namespace vexa {

namespace {

void require_netlist(sta::Sta *sta)
{
  if (sta->network()->topInstance() == nullptr)
    throw ReportError("No netlist is loaded.");
}

} // namespace

std::vector<ClockRow> clock_rows(sta::Sta *sta)
{
  require_netlist(sta);
  TimeUnit unit(sta);
  std::vector<ClockRow> rows;
  for (sta::Clock *clock : *sta->sdc()->clocks()) {
    ClockRow row;
    row.name = clock->name();
    row.type = clock->isVirtual() ? "virtual" : clock->isGenerated() ? "generated" : "base";
    row.period = unit.to_user(clock->period());
    if (clock->period() > 0)
      row.frequency_mhz = 1e-6 / clock->period();
    const sta::FloatSeq *waveform = clock->waveform();
    if (waveform && waveform->size() >= 2) {
      row.rise = unit.to_user((*waveform)[0]);
      row.fall = unit.to_user((*waveform)[1]);
      if (clock->period() > 0)
        row.duty_cycle = 100.0 * ((*waveform)[1] - (*waveform)[0]) / clock->period();
    }
    if (clock->masterClk())
      row.master = clock->masterClk()->name();
    std::vector<std::string> sources;
    for (const sta::Pin *pin : clock->pins())
      sources.push_back(pin_display_name(sta, pin));
    std::sort(sources.begin(), sources.end());
    for (const std::string &source : sources)
      row.sources += (row.sources.empty() ? "" : " ") + source;
    rows.push_back(std::move(row));
  }
  return rows;
}

std::vector<UnconstrainedPointRow> unconstrained_points(sta::Sta *sta)
{
  require_netlist(sta);
  std::vector<UnconstrainedPointRow> rows;
  struct Kind
  {
    const char *title;
    bool no_input_delay, no_output_delay, reg_no_clks;
  };
  static const Kind kinds[] = {
    {"Input without input delay", true, false, false},
    {"Output without output delay", false, true, false},
    {"Register without clock", false, false, true},
  };
  for (const Kind &kind : kinds) {
    sta::CheckErrorSeq &errors =
      sta->checkTiming(kind.no_input_delay, kind.no_output_delay, false, kind.reg_no_clks,
                       false, false, false);
    std::vector<std::string> names;
    for (sta::CheckError *error : errors) {
      // The first string is OpenSTA's message; the names follow.
      for (size_t i = 1; i < error->size(); i++)
        names.push_back((*error)[i]);
    }
    std::sort(names.begin(), names.end());
    for (const std::string &name : names)
      rows.push_back({kind.title, name});
  }
  return rows;
}

std::vector<NetTimingRow> net_timing_rows(sta::Sta *sta, const std::vector<std::string> &nets,
                                          bool by_fanout, int limit)
{
  require_netlist(sta);
  sta->ensureGraph();
  sta->findDelays();
  TimeUnit unit(sta);
  sta::Network *network = sta->sdcNetwork();
  sta::Graph *graph = sta->graph();
  const sta::DcalcAnalysisPt *ap =
    sta->cmdCorner()->findDcalcAnalysisPt(sta::MinMax::max());

  std::vector<sta::Pin *> drivers;
  if (!nets.empty()) {
    ResolvedNodes nodes = resolve_nodes(sta, nets, "nets", true);
    std::set<const sta::Net *> wanted(nodes.nets.begin(), nodes.nets.end());
    for (sta::Pin *pin : nodes.pins)
      if (network->net(pin))
        wanted.insert(network->net(pin));
    for (const sta::Net *net : wanted) {
      sta::NetConnectedPinIterator *pins = network->connectedPinIterator(net);
      while (pins->hasNext()) {
        sta::Pin *pin = pins->next();
        if (network->isDriver(pin))
          drivers.push_back(pin);
      }
      delete pins;
    }
  } else {
    sta::LeafInstanceIterator *insts = network->leafInstanceIterator();
    while (insts->hasNext()) {
      sta::InstancePinIterator *pins = network->pinIterator(insts->next());
      while (pins->hasNext()) {
        sta::Pin *pin = pins->next();
        if (network->isDriver(pin))
          drivers.push_back(pin);
      }
      delete pins;
    }
    delete insts;
    sta::InstancePinIterator *ports = network->pinIterator(network->topInstance());
    while (ports->hasNext()) {
      sta::Pin *pin = ports->next();
      if (network->isDriver(pin))
        drivers.push_back(pin);
    }
    delete ports;
  }

  std::vector<NetTimingRow> rows;
  for (sta::Pin *driver : drivers) {
    NetTimingRow row;
    const sta::Net *net = network->isTopLevelPort(driver) ? network->net(network->term(driver))
                                                          : network->net(driver);
    row.net = net ? network->pathName(net) : pin_display_name(sta, driver);
    row.driver = pin_display_name(sta, driver);
    double worst = -1;
    sta::Vertex *vertex = graph->pinDrvrVertex(driver);
    if (vertex) {
      sta::VertexOutEdgeIterator edges(vertex, graph);
      while (edges.hasNext()) {
        sta::Edge *edge = edges.next();
        if (!edge->role()->isWire())
          continue;
        row.fanout++;
        for (sta::TimingArc *arc : edge->timingArcSet()->arcs()) {
          double delay = graph->arcDelay(edge, arc, ap->index());
          if (delay > worst) {
            worst = delay;
            row.worst_load = pin_display_name(sta, edge->to(graph)->pin());
          }
        }
      }
    }
    row.worst_delay = worst > 0 ? unit.to_user(worst) : 0.0;
    rows.push_back(std::move(row));
  }
  std::stable_sort(rows.begin(), rows.end(), [&](const NetTimingRow &a, const NetTimingRow &b) {
    if (by_fanout && a.fanout != b.fanout)
      return a.fanout > b.fanout;
    if (a.worst_delay != b.worst_delay)
      return a.worst_delay > b.worst_delay;
    if (a.fanout != b.fanout)
      return a.fanout > b.fanout;
    return a.net < b.net;
  });
  if (limit > 0 && rows.size() > static_cast<size_t>(limit))
    rows.resize(static_cast<size_t>(limit));
  return rows;
}

std::vector<PulseWidthRow> pulse_width_rows(sta::Sta *sta, const std::vector<std::string> &targets,
                                            int nworst)
{
  require_netlist(sta);
  TimeUnit unit(sta);
  sta::Network *network = sta->sdcNetwork();
  sta::MinPulseWidthCheckSeq *checks = nullptr;
  sta::PinSeq pins;
  if (!targets.empty()) {
    ResolvedNodes nodes = resolve_nodes(sta, targets, "targets", false);
    for (sta::Pin *pin : nodes.pins)
      pins.push_back(pin);
    for (sta::Instance *inst : nodes.instances) {
      sta::InstancePinIterator *iter = network->pinIterator(inst);
      while (iter->hasNext())
        pins.push_back(iter->next());
      delete iter;
    }
    checks = &sta->minPulseWidthChecks(&pins, nullptr);
  } else {
    checks = &sta->minPulseWidthChecks(nullptr);
  }
  std::vector<PulseWidthRow> rows;
  for (sta::MinPulseWidthCheck *check : *checks) {
    PulseWidthRow row;
    row.pin = pin_display_name(sta, check->pin(sta));
    const sta::ClockEdge *edge = check->openClkEdge(sta);
    row.clock = edge ? edge->clock()->name() : "";
    row.edge = check->openTransition(sta) == sta::TransRiseFall::rise() ? "high" : "low";
    row.required = unit.to_user(check->minWidth(sta));
    row.actual = unit.to_user(check->width(sta));
    row.slack = unit.to_user(check->slack(sta));
    rows.push_back(std::move(row));
  }
  std::stable_sort(rows.begin(), rows.end(), [](const PulseWidthRow &a, const PulseWidthRow &b) {
    if (a.slack != b.slack)
      return a.slack < b.slack;
    return a.pin < b.pin;
  });
  if (nworst > 0 && rows.size() > static_cast<size_t>(nworst))
    rows.resize(static_cast<size_t>(nworst));
  return rows;
}

std::vector<HistogramBinRow> histogram_bins(const std::vector<double> &values, int num_bins,
                                            std::optional<double> min_value,
                                            std::optional<double> max_value)
{
  if (num_bins < 1)
    throw ReportError("The number of bins (-num_bins) must be a positive integer.");
  double low = 0, high = 0;
  if (!values.empty()) {
    auto [lo, hi] = std::minmax_element(values.begin(), values.end());
    low = *lo;
    high = *hi;
  }
  if (min_value)
    low = *min_value;
  if (max_value)
    high = *max_value;
  if (min_value && max_value && high <= low)
    throw ReportError("The maximum slack (-max_slack) must be greater than the minimum slack "
                      "(-min_slack).");
  if (high <= low) {
    // All values equal (or none): one unit-wide range around them.
    if (min_value)
      high = low + 1.0;
    else
      low = high - 1.0;
  }
  double width = (high - low) / num_bins;
  if (!min_value && !max_value && low < 0 && high > 0 && num_bins > 1) {
    // Make zero a bin edge so that failing and passing end points never
    // share a bin: k bins below zero, the rest above, all of one width.
    int below = static_cast<int>(std::lround(num_bins * -low / (high - low)));
    below = std::clamp(below, 1, num_bins - 1);
    width = std::max(-low / below, high / (num_bins - below));
    low = -width * below;
    high = width * (num_bins - below);
  }
  std::vector<HistogramBinRow> bins(static_cast<size_t>(num_bins));
  for (int i = 0; i < num_bins; i++) {
    bins[i].from = low + width * i;
    bins[i].to = i + 1 == num_bins ? high : low + width * (i + 1);
  }
  // The edges above are computed, so the largest value may lie a rounding
  // step beyond the top edge: only the limits the user gave drop values.
  if (!values.empty()) {
    auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    if (!min_value)
      bins.front().from = std::min(bins.front().from, *lowest);
    if (!max_value)
      bins.back().to = std::max(bins.back().to, *highest);
  }
  for (double value : values) {
    if ((min_value && value < *min_value) || (max_value && value > *max_value))
      continue;
    int index = static_cast<int>(std::floor((value - low) / width));
    index = std::clamp(index, 0, num_bins - 1);
    bins[index].count++;
  }
  return bins;
}

namespace {

bool is_number(const std::string &text)
{
  char *end = nullptr;
  std::strtod(text.c_str(), &end);
  return !text.empty() && *end == '\0';
}

} // namespace

std::string constraint_table_title(const std::string &command)
{
  static const std::map<std::string, std::string> titles = {
    {"create_clock", "Clocks"},
    {"create_generated_clock", "Generated Clocks"},
    {"set_clock_latency", "Clock Latency"},
    {"set_clock_uncertainty", "Clock Uncertainty"},
    {"set_clock_groups", "Clock Groups"},
    {"set_propagated_clock", "Propagated Clocks"},
    {"set_input_delay", "Input Delays"},
    {"set_output_delay", "Output Delays"},
    {"set_false_path", "False Paths"},
    {"set_multicycle_path", "Multicycle Paths"},
    {"set_max_delay", "Maximum Delays"},
    {"set_min_delay", "Minimum Delays"},
    {"set_input_transition", "Input Transitions"},
    {"set_load", "Loads"},
    {"remove_clock", "Removed Clocks"},
  };
  auto it = titles.find(command);
  return it != titles.end() ? it->second : "Other Constraints";
}

ConstraintEntry parse_constraint(const std::string &line)
{
  // Options of SDC commands that take no value.
  static const std::set<std::string> flags = {
    "-add", "-add_delay", "-rise", "-fall", "-max", "-min", "-setup", "-hold", "-start",
    "-end", "-clock_fall", "-source", "-invert", "-combinational", "-early", "-late",
    "-network_latency_included", "-source_latency_included", "-asynchronous",
    "-logically_exclusive", "-physically_exclusive", "-level_sensitive", "-edge_triggered"};
  ConstraintEntry entry;
  entry.line = line;
  // The recorded line keeps its command substitutions ("[get_ports a]")
  // unevaluated, so it is parsed as a command, not split as a list: each
  // word is taken as written, braces of braced words removed.
  std::vector<std::string> words;
  Tcl_Parse parse;
  if (Tcl_ParseCommand(nullptr, line.c_str(), static_cast<int>(line.size()), 0, &parse) ==
      TCL_OK) {
    for (int i = 0; i < parse.numTokens; i += 1 + parse.tokenPtr[i].numComponents) {
      const Tcl_Token &token = parse.tokenPtr[i];
      if (token.type != TCL_TOKEN_WORD && token.type != TCL_TOKEN_SIMPLE_WORD)
        continue;
      std::string word(token.start, static_cast<size_t>(token.size));
      if (word.size() >= 2 && word.front() == '{' && word.back() == '}')
        word = word.substr(1, word.size() - 2);
      words.push_back(std::move(word));
    }
    Tcl_FreeParse(&parse);
  }
  if (words.empty()) {
    entry.command = line;
    return entry;
  }
  entry.command = words[0];
  const int count = static_cast<int>(words.size());
  for (int i = 1; i < count; i++) {
    const std::string &word = words[i];
    if (word.size() > 1 && word[0] == '-' && !std::isdigit(static_cast<unsigned char>(word[1])) &&
        word[1] != '.') {
      // -source is a flag of set_clock_latency but takes a pin elsewhere.
      bool flag = flags.count(word) && (word != "-source" || entry.command == "set_clock_latency");
      if (flag || i + 1 >= count)
        entry.options.emplace_back(word, "");
      else
        entry.options.emplace_back(word, words[++i]);
    } else if (entry.value.empty() && entry.targets.empty() && is_number(word)) {
      entry.value = word;
    } else {
      entry.targets += (entry.targets.empty() ? "" : " ") + word;
    }
  }
  return entry;
}

} // namespace vexa
