# Constraints of the reset example: one clock, asynchronous resets, I/O delays.
create_clock -name clk -period 4.5 -waveform {0 2.25} [get_ports clk]
set_input_delay 1.0 -clock clk [get_ports {rx ack host_in[*]}]
set_input_delay 0.5 -clock clk [get_ports rst_n]
set_output_delay 1.5 -clock clk [get_ports {data_out[*] valid busy_n crc[*] timeout}]
set_output_delay 1.0 -clock clk [get_ports {host_out[*]}]
