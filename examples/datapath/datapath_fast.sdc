# Constraints of the datapath_fast revision: the same design on the faster
# OSU 0.18 um cells (speed grade 018) at 4.6 ns.  The four upper product bits
# of the multiplier stage still miss setup.
create_clock -name clk -period 4.6 -waveform {0 2.3} [get_ports clk]
set_input_delay 1.0 -clock clk [get_ports {a[*] b[*] op[*] clr}]
set_output_delay 1.4 -clock clk [get_ports {acc[*] alu_q[*] zero}]
