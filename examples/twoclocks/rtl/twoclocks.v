// Two unrelated clock domains and a clock divided by two from the first.
//
// sys_clk runs a counter and a toggling register that divides it by two
// (half_clk).  io_clk runs its own counter.  Single-bit events cross in both
// directions through two-register synchronisers; data buses also cross
// directly in both directions, so the analysis sees clock transfers
// sys_clk -> io_clk, io_clk -> sys_clk and between sys_clk and half_clk.
module twoclocks (
  input            sys_clk,
  input            io_clk,
  input      [7:0] sys_in,
  input      [7:0] io_in,
  output reg [7:0] sys_out,
  output reg [7:0] io_out,
  output reg [7:0] half_out,
  output           io_event,
  output           sys_event
);
  // sys_clk domain
  reg [7:0] sys_cnt;
  reg [7:0] sys_data;
  reg       sys_toggle;
  reg       half_clk;

  always @(posedge sys_clk) begin
    sys_cnt    <= sys_cnt + 8'd1;
    sys_data   <= sys_in ^ sys_cnt;
    sys_toggle <= sys_toggle ^ (sys_cnt == 8'hff);
    half_clk   <= ~half_clk;
  end

  // io_clk domain
  reg [7:0] io_cnt;
  reg [7:0] io_data;
  reg       io_toggle;

  always @(posedge io_clk) begin
    io_cnt    <= io_cnt + 8'd1;
    io_data   <= io_in + io_cnt;
    io_toggle <= io_toggle ^ (io_cnt[3:0] == 4'hf);
  end

  // Synchronisers: the first register of each is the metastable one.
  reg sync_io_meta, sync_io_q, sync_io_d;
  always @(posedge io_clk) begin
    sync_io_meta <= sys_toggle;
    sync_io_q    <= sync_io_meta;
    sync_io_d    <= sync_io_q;
  end
  assign io_event = sync_io_q ^ sync_io_d;

  reg sync_sys_meta, sync_sys_q, sync_sys_d;
  always @(posedge sys_clk) begin
    sync_sys_meta <= io_toggle;
    sync_sys_q    <= sync_sys_meta;
    sync_sys_d    <= sync_sys_q;
  end
  assign sys_event = sync_sys_q ^ sync_sys_d;

  // half_clk domain: takes sys_clk data and gives data back to sys_clk.
  reg [7:0] half_acc;
  always @(posedge half_clk) begin
    half_acc <= half_acc + sys_data;
    half_out <= half_acc ^ io_data;
  end

  // Direct crossings: buses sampled in the other domain without a
  // synchroniser, so the transfers are timed.
  always @(posedge io_clk)
    io_out <= io_data + sys_data;

  always @(posedge sys_clk)
    sys_out <= (sys_data ^ io_data) + (half_acc - sys_cnt) + {7'd0, sys_event};
endmodule
