// A serial receiver with asynchronous resets and constrained I/O.
//
// rst_n from the pin clears the reset synchroniser at once; its output
// (rst_sync_n) leaves reset on a clock edge and resets the rest of the design
// asynchronously, which gives recovery and removal checks from a clocked
// source.  The status register is preset (asynchronous set) by the same reset.
// A transparent latch holds the last byte (mixed with the host's) for the
// host port.
module resets (
  input            clk,
  input            rst_n,
  input            rx,
  input            ack,
  input      [7:0] host_in,
  output reg [7:0] data_out,
  output reg       valid,
  output reg       busy_n,
  output     [7:0] host_out,
  output reg [7:0] crc,
  output reg       timeout
);
  reg rst_meta, rst_sync_n;
  always @(posedge clk or negedge rst_n)
    if (!rst_n) begin
      rst_meta   <= 1'b0;
      rst_sync_n <= 1'b0;
    end else begin
      rst_meta   <= 1'b1;
      rst_sync_n <= rst_meta;
    end

  reg [7:0] shift;
  reg [3:0] count;
  reg       rx_q;
  always @(posedge clk or negedge rst_sync_n)
    if (!rst_sync_n) begin
      shift    <= 8'd0;
      count    <= 4'd0;
      rx_q     <= 1'b1;
      data_out <= 8'd0;
      valid    <= 1'b0;
    end else begin
      rx_q  <= rx;
      shift <= {rx_q, shift[7:1]};
      if (count == 4'd8) begin
        count    <= 4'd0;
        data_out <= shift;
        valid    <= 1'b1;
      end else begin
        count <= count + 4'd1;
        if (ack) valid <= 1'b0;
      end
    end

  // Preset rather than cleared: the receiver reports "not busy" out of reset.
  always @(posedge clk or negedge rst_sync_n)
    if (!rst_sync_n)
      busy_n <= 1'b1;
    else
      busy_n <= (count == 4'd0);

  // CRC-8 (polynomial x^8 + x^2 + x + 1) over the received bits and the host byte.
  always @(posedge clk or negedge rst_sync_n)
    if (!rst_sync_n)
      crc <= 8'hff;
    else
      crc <= {crc[6:0], 1'b0} ^ ((crc[7] ^ rx_q) ? 8'h07 : 8'h00) ^ host_in;

  // Line-idle watchdog: counts cycles without a change on rx and flags a
  // stalled line until the host acknowledges.
  reg [15:0] idle;
  always @(posedge clk or negedge rst_sync_n)
    if (!rst_sync_n) begin
      idle    <= 16'd0;
      timeout <= 1'b0;
    end else begin
      idle    <= (rx_q != rx) ? 16'd0 : idle + 16'd1;
      timeout <= (idle == 16'hffff) | (timeout & ~ack);
    end

  // Level-sensitive hold register, open while clk is low: the latch (the
  // library's LATCH cell is open while its CLK is high) gets the inverted
  // clock, so data launched at a rising edge settles before it opens.
  wire clk_n = ~clk;
  genvar i;
  generate
    for (i = 0; i < 8; i = i + 1) begin : hold
      LATCH host_latch (.CLK(clk_n), .D(data_out[i] ^ host_in[i]), .Q(host_out[i]));
    end
  endgenerate
endmodule
