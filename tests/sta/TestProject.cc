#include "TestProject.hh"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace vexa::test {

TestProject::TestProject()
{
  char pattern[] = "/tmp/vexa_sta_test_XXXXXX";
  m_dir = mkdtemp(pattern);
  std::filesystem::create_directories(m_dir + "/netlist");
  write("netlist/chip.v", R"(module chip (clk, a, b, q);
  input clk, a, b;
  output [1:0] q;
  wire n1, n2, q1;
  NAND2X1 u1 (.A(a), .B(b), .Y(n1));
  DFFPOSX1 r1 (.CLK(clk), .D(n1), .Q(q1));
  INVX1 u2 (.A(q1), .Y(n2));
  DFFPOSX1 r2 (.CLK(clk), .D(n2), .Q(q[0]));
  INVX1 u3 (.A(q1), .Y(q[1]));
endmodule
)");
  write("chip.vpf", "# test project\nproject_name = chip\nrevision = chip\nrevision = chip_fast\n");
  write("chip.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 035\n"
                    "verilog_file = netlist/chip.v\nsdc_file = chip.sdc\n"
                    "clock_requirement = sys clk 8.0 0 4\n");
  write("chip_fast.vsf", "top_module = chip\nfamily = OSU\nspeed_grade = 018\n"
                         "verilog_file = netlist/chip.v\n");
  write("chip.sdc", "create_clock -name clk -period 10 -waveform {0 5} [get_ports clk]\n"
                    "set_input_delay 1 -clock clk [get_ports {a b}]\n"
                    "set_output_delay 2 -clock clk [get_ports q*]\n");
}

TestProject::~TestProject()
{
  std::error_code ec;
  std::filesystem::remove_all(m_dir, ec);
}

void TestProject::write(const std::string &name, const std::string &text) const
{
  std::ofstream(path(name), std::ios::trunc) << text;
}

} // namespace vexa::test
