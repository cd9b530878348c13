// Gate-level netlist of resets, made by examples/make_netlists.sh from rtl/resets.v.
// Library: OSU 0.35 um standard cells.  Do not edit; regenerate instead.

module resets(clk, rst_n, rx, ack, host_in, data_out, valid, busy_n, host_out, crc);
  wire _000_;
  wire [3:0] _001_;
  wire [7:0] _002_;
  wire _003_;
  wire _004_;
  wire _005_;
  wire _006_;
  wire _007_;
  wire _008_;
  wire _009_;
  wire _010_;
  wire _011_;
  wire _012_;
  wire _013_;
  wire _014_;
  wire _015_;
  wire _016_;
  wire _017_;
  wire _018_;
  wire _019_;
  wire _020_;
  wire _021_;
  wire _022_;
  wire _023_;
  wire _024_;
  wire _025_;
  wire _026_;
  wire _027_;
  wire _028_;
  wire _029_;
  wire _030_;
  wire _031_;
  wire _032_;
  wire _033_;
  wire _034_;
  wire _035_;
  wire _036_;
  wire _037_;
  wire _038_;
  wire _039_;
  wire _040_;
  wire _041_;
  wire _042_;
  wire _043_;
  wire _044_;
  wire _045_;
  wire _046_;
  wire _047_;
  input ack;
  wire ack;
  output busy_n;
  wire busy_n;
  input clk;
  wire clk;
  wire clk_n;
  wire [3:0] count;
  output [7:0] crc;
  wire [7:0] crc;
  output [7:0] data_out;
  wire [7:0] data_out;
  input [7:0] host_in;
  wire [7:0] host_in;
  output [7:0] host_out;
  wire [7:0] host_out;
  wire rst_meta;
  input rst_n;
  wire rst_n;
  wire rst_sync_n;
  input rx;
  wire rx;
  wire rx_q;
  wire [7:0] shift;
  output valid;
  wire valid;
  INVX1 _048_ (
    .A(count[0]),
    .Y(_024_)
  );
  INVX1 _049_ (
    .A(count[2]),
    .Y(_025_)
  );
  INVX1 _050_ (
    .A(clk),
    .Y(clk_n)
  );
  INVX1 _051_ (
    .A(data_out[0]),
    .Y(_026_)
  );
  INVX1 _052_ (
    .A(data_out[1]),
    .Y(_027_)
  );
  INVX1 _053_ (
    .A(data_out[2]),
    .Y(_028_)
  );
  INVX1 _054_ (
    .A(data_out[3]),
    .Y(_029_)
  );
  INVX1 _055_ (
    .A(data_out[4]),
    .Y(_030_)
  );
  INVX1 _056_ (
    .A(data_out[5]),
    .Y(_031_)
  );
  INVX1 _057_ (
    .A(data_out[6]),
    .Y(_032_)
  );
  INVX1 _058_ (
    .A(data_out[7]),
    .Y(_033_)
  );
  INVX1 _059_ (
    .A(valid),
    .Y(_034_)
  );
  INVX1 _060_ (
    .A(shift[0]),
    .Y(_035_)
  );
  INVX1 _061_ (
    .A(shift[1]),
    .Y(_036_)
  );
  INVX1 _062_ (
    .A(shift[2]),
    .Y(_037_)
  );
  INVX1 _063_ (
    .A(shift[3]),
    .Y(_038_)
  );
  INVX1 _064_ (
    .A(shift[4]),
    .Y(_039_)
  );
  INVX1 _065_ (
    .A(shift[5]),
    .Y(_040_)
  );
  INVX1 _066_ (
    .A(shift[6]),
    .Y(_041_)
  );
  INVX1 _067_ (
    .A(shift[7]),
    .Y(_042_)
  );
  NOR2X1 _068_ (
    .A(count[1]),
    .B(count[0]),
    .Y(_043_)
  );
  NOR2X1 _069_ (
    .A(count[2]),
    .B(count[3]),
    .Y(_044_)
  );
  AND2X1 _070_ (
    .A(_043_),
    .B(_044_),
    .Y(_000_)
  );
  NAND3X1 _071_ (
    .A(_025_),
    .B(count[3]),
    .C(_043_),
    .Y(_045_)
  );
  AND2X1 _072_ (
    .A(_024_),
    .B(_045_),
    .Y(_001_[0])
  );
  NAND2X1 _073_ (
    .A(count[1]),
    .B(count[0]),
    .Y(_046_)
  );
  XOR2X1 _074_ (
    .A(count[1]),
    .B(count[0]),
    .Y(_001_[1])
  );
  NAND3X1 _075_ (
    .A(count[1]),
    .B(count[0]),
    .C(count[2]),
    .Y(_047_)
  );
  XNOR2X1 _076_ (
    .A(count[2]),
    .B(_046_),
    .Y(_001_[2])
  );
  XNOR2X1 _077_ (
    .A(count[3]),
    .B(_047_),
    .Y(_020_)
  );
  AND2X1 _078_ (
    .A(_045_),
    .B(_020_),
    .Y(_001_[3])
  );
  XNOR2X1 _079_ (
    .A(rx_q),
    .B(crc[7]),
    .Y(_021_)
  );
  XNOR2X1 _080_ (
    .A(host_in[0]),
    .B(_021_),
    .Y(_002_[0])
  );
  XOR2X1 _081_ (
    .A(crc[0]),
    .B(host_in[1]),
    .Y(_022_)
  );
  XNOR2X1 _082_ (
    .A(_021_),
    .B(_022_),
    .Y(_002_[1])
  );
  XOR2X1 _083_ (
    .A(crc[1]),
    .B(host_in[2]),
    .Y(_023_)
  );
  XNOR2X1 _084_ (
    .A(_021_),
    .B(_023_),
    .Y(_002_[2])
  );
  XOR2X1 _085_ (
    .A(host_in[3]),
    .B(crc[2]),
    .Y(_002_[3])
  );
  XOR2X1 _086_ (
    .A(host_in[4]),
    .B(crc[3]),
    .Y(_002_[4])
  );
  XOR2X1 _087_ (
    .A(host_in[5]),
    .B(crc[4]),
    .Y(_002_[5])
  );
  XOR2X1 _088_ (
    .A(host_in[6]),
    .B(crc[5]),
    .Y(_002_[6])
  );
  XOR2X1 _089_ (
    .A(host_in[7]),
    .B(crc[6]),
    .Y(_002_[7])
  );
  XOR2X1 _090_ (
    .A(host_in[0]),
    .B(data_out[0]),
    .Y(_003_)
  );
  XOR2X1 _091_ (
    .A(host_in[1]),
    .B(data_out[1]),
    .Y(_004_)
  );
  XOR2X1 _092_ (
    .A(host_in[2]),
    .B(data_out[2]),
    .Y(_005_)
  );
  XOR2X1 _093_ (
    .A(host_in[3]),
    .B(data_out[3]),
    .Y(_006_)
  );
  XOR2X1 _094_ (
    .A(host_in[4]),
    .B(data_out[4]),
    .Y(_007_)
  );
  XOR2X1 _095_ (
    .A(host_in[5]),
    .B(data_out[5]),
    .Y(_008_)
  );
  XOR2X1 _096_ (
    .A(host_in[6]),
    .B(data_out[6]),
    .Y(_009_)
  );
  XOR2X1 _097_ (
    .A(host_in[7]),
    .B(data_out[7]),
    .Y(_010_)
  );
  OAI21X1 _098_ (
    .A(ack),
    .B(_034_),
    .C(_045_),
    .Y(_011_)
  );
  MUX2X1 _099_ (
    .A(_026_),
    .B(_035_),
    .S(_045_),
    .Y(_012_)
  );
  MUX2X1 _100_ (
    .A(_027_),
    .B(_036_),
    .S(_045_),
    .Y(_013_)
  );
  MUX2X1 _101_ (
    .A(_028_),
    .B(_037_),
    .S(_045_),
    .Y(_014_)
  );
  MUX2X1 _102_ (
    .A(_029_),
    .B(_038_),
    .S(_045_),
    .Y(_015_)
  );
  MUX2X1 _103_ (
    .A(_030_),
    .B(_039_),
    .S(_045_),
    .Y(_016_)
  );
  MUX2X1 _104_ (
    .A(_031_),
    .B(_040_),
    .S(_045_),
    .Y(_017_)
  );
  MUX2X1 _105_ (
    .A(_032_),
    .B(_041_),
    .S(_045_),
    .Y(_018_)
  );
  MUX2X1 _106_ (
    .A(_033_),
    .B(_042_),
    .S(_045_),
    .Y(_019_)
  );
  DFFSR busy_n_reg (
    .CLK(clk),
    .D(_000_),
    .Q(busy_n),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \count_reg[0]  (
    .CLK(clk),
    .D(_001_[0]),
    .Q(count[0]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \count_reg[1]  (
    .CLK(clk),
    .D(_001_[1]),
    .Q(count[1]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \count_reg[2]  (
    .CLK(clk),
    .D(_001_[2]),
    .Q(count[2]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \count_reg[3]  (
    .CLK(clk),
    .D(_001_[3]),
    .Q(count[3]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \crc_reg[0]  (
    .CLK(clk),
    .D(_002_[0]),
    .Q(crc[0]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[1]  (
    .CLK(clk),
    .D(_002_[1]),
    .Q(crc[1]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[2]  (
    .CLK(clk),
    .D(_002_[2]),
    .Q(crc[2]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[3]  (
    .CLK(clk),
    .D(_002_[3]),
    .Q(crc[3]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[4]  (
    .CLK(clk),
    .D(_002_[4]),
    .Q(crc[4]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[5]  (
    .CLK(clk),
    .D(_002_[5]),
    .Q(crc[5]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[6]  (
    .CLK(clk),
    .D(_002_[6]),
    .Q(crc[6]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \crc_reg[7]  (
    .CLK(clk),
    .D(_002_[7]),
    .Q(crc[7]),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \data_out_reg[0]  (
    .CLK(clk),
    .D(_012_),
    .Q(data_out[0]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[1]  (
    .CLK(clk),
    .D(_013_),
    .Q(data_out[1]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[2]  (
    .CLK(clk),
    .D(_014_),
    .Q(data_out[2]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[3]  (
    .CLK(clk),
    .D(_015_),
    .Q(data_out[3]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[4]  (
    .CLK(clk),
    .D(_016_),
    .Q(data_out[4]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[5]  (
    .CLK(clk),
    .D(_017_),
    .Q(data_out[5]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[6]  (
    .CLK(clk),
    .D(_018_),
    .Q(data_out[6]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[7]  (
    .CLK(clk),
    .D(_019_),
    .Q(data_out[7]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  LATCH \hold[0].host_latch  (
    .CLK(clk_n),
    .D(_003_),
    .Q(host_out[0])
  );
  LATCH \hold[1].host_latch  (
    .CLK(clk_n),
    .D(_004_),
    .Q(host_out[1])
  );
  LATCH \hold[2].host_latch  (
    .CLK(clk_n),
    .D(_005_),
    .Q(host_out[2])
  );
  LATCH \hold[3].host_latch  (
    .CLK(clk_n),
    .D(_006_),
    .Q(host_out[3])
  );
  LATCH \hold[4].host_latch  (
    .CLK(clk_n),
    .D(_007_),
    .Q(host_out[4])
  );
  LATCH \hold[5].host_latch  (
    .CLK(clk_n),
    .D(_008_),
    .Q(host_out[5])
  );
  LATCH \hold[6].host_latch  (
    .CLK(clk_n),
    .D(_009_),
    .Q(host_out[6])
  );
  LATCH \hold[7].host_latch  (
    .CLK(clk_n),
    .D(_010_),
    .Q(host_out[7])
  );
  DFFSR rst_meta_reg (
    .CLK(clk),
    .D(1'h1),
    .Q(rst_meta),
    .R(rst_n),
    .S(1'h1)
  );
  DFFSR rst_sync_n_reg (
    .CLK(clk),
    .D(rst_meta),
    .Q(rst_sync_n),
    .R(rst_n),
    .S(1'h1)
  );
  DFFSR rx_q_reg (
    .CLK(clk),
    .D(rx),
    .Q(rx_q),
    .R(1'h1),
    .S(rst_sync_n)
  );
  DFFSR \shift_reg[0]  (
    .CLK(clk),
    .D(shift[1]),
    .Q(shift[0]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[1]  (
    .CLK(clk),
    .D(shift[2]),
    .Q(shift[1]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[2]  (
    .CLK(clk),
    .D(shift[3]),
    .Q(shift[2]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[3]  (
    .CLK(clk),
    .D(shift[4]),
    .Q(shift[3]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[4]  (
    .CLK(clk),
    .D(shift[5]),
    .Q(shift[4]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[5]  (
    .CLK(clk),
    .D(shift[6]),
    .Q(shift[5]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[6]  (
    .CLK(clk),
    .D(shift[7]),
    .Q(shift[6]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \shift_reg[7]  (
    .CLK(clk),
    .D(rx_q),
    .Q(shift[7]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR valid_reg (
    .CLK(clk),
    .D(_011_),
    .Q(valid),
    .R(rst_sync_n),
    .S(1'h1)
  );
endmodule
