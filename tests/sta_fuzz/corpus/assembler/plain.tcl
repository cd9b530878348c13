create_clock -name clk -period 10 [get_ports clk]
puts "a\0b"
