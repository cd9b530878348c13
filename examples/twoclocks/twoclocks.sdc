# Constraints of the two-clock example.
# sys_clk and io_clk come from unrelated oscillators; half_clk is sys_clk
# divided by two in register half_clk_reg.
create_clock -name sys_clk -period 10.0 -waveform {0 5} [get_ports sys_clk]
create_clock -name io_clk -period 8.0 -waveform {0 4} [get_ports io_clk]
create_generated_clock -name half_clk -source [get_ports sys_clk] -divide_by 2 [get_pins half_clk_reg/Q]

set_input_delay 2.0 -clock sys_clk [get_ports {sys_in[*]}]
set_input_delay 2.0 -clock io_clk [get_ports {io_in[*]}]
set_output_delay 2.0 -clock sys_clk [get_ports {sys_out[*] sys_event}]
set_output_delay 2.0 -clock io_clk [get_ports {io_out[*] io_event}]
set_output_delay 3.0 -clock half_clk [get_ports {half_out[*]}]

# The first register of each synchroniser may go metastable by design;
# the crossing into it is not a timing path.
set_false_path -to [get_pins sync_io_meta_reg/D]
set_false_path -to [get_pins sync_sys_meta_reg/D]
