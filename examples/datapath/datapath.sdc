# Constraints of the datapath example: one clock, registered I/O.
# At 6.5 ns the upper product bits of the multiplier stage miss setup;
# the accumulator, the ALU and the I/O paths meet.
create_clock -name clk -period 6.5 -waveform {0 3.25} [get_ports clk]
set_input_delay 1.5 -clock clk [get_ports {a[*] b[*] op[*] clr}]
set_output_delay 2.0 -clock clk [get_ports {acc[*] alu_q[*] zero}]
