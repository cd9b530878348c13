// Gate-level netlist of resets, made by examples/make_netlists.sh from rtl/resets.v.
// Library: OSU 0.35 um standard cells.  Do not edit; regenerate instead.

module resets(clk, rst_n, rx, ack, host_in, data_out, valid, busy_n, host_out, crc, timeout);
  wire _000_;
  wire [3:0] _001_;
  wire [7:0] _002_;
  wire [15:0] _003_;
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
  wire _048_;
  wire _049_;
  wire _050_;
  wire _051_;
  wire _052_;
  wire _053_;
  wire _054_;
  wire _055_;
  wire _056_;
  wire _057_;
  wire _058_;
  wire _059_;
  wire _060_;
  wire _061_;
  wire _062_;
  wire _063_;
  wire _064_;
  wire _065_;
  wire _066_;
  wire _067_;
  wire _068_;
  wire _069_;
  wire _070_;
  wire _071_;
  wire _072_;
  wire _073_;
  wire _074_;
  wire _075_;
  wire _076_;
  wire _077_;
  wire _078_;
  wire _079_;
  wire _080_;
  wire _081_;
  wire _082_;
  wire _083_;
  wire _084_;
  wire _085_;
  wire _086_;
  wire _087_;
  wire _088_;
  wire _089_;
  wire _090_;
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
  wire [15:0] idle;
  wire rst_meta;
  input rst_n;
  wire rst_n;
  wire rst_sync_n;
  input rx;
  wire rx;
  wire rx_q;
  wire [7:0] shift;
  output timeout;
  wire timeout;
  output valid;
  wire valid;
  INVX1 _091_ (
    .A(idle[3]),
    .Y(_022_)
  );
  INVX1 _092_ (
    .A(idle[4]),
    .Y(_023_)
  );
  INVX1 _093_ (
    .A(idle[6]),
    .Y(_024_)
  );
  INVX1 _094_ (
    .A(idle[7]),
    .Y(_025_)
  );
  INVX1 _095_ (
    .A(idle[8]),
    .Y(_026_)
  );
  INVX1 _096_ (
    .A(idle[10]),
    .Y(_027_)
  );
  INVX1 _097_ (
    .A(idle[11]),
    .Y(_028_)
  );
  INVX1 _098_ (
    .A(idle[12]),
    .Y(_029_)
  );
  INVX1 _099_ (
    .A(idle[14]),
    .Y(_030_)
  );
  INVX1 _100_ (
    .A(idle[15]),
    .Y(_031_)
  );
  INVX1 _101_ (
    .A(clk),
    .Y(clk_n)
  );
  INVX1 _102_ (
    .A(timeout),
    .Y(_032_)
  );
  INVX1 _103_ (
    .A(valid),
    .Y(_033_)
  );
  OR2X1 _104_ (
    .A(count[1]),
    .B(count[0]),
    .Y(_034_)
  );
  NOR2X1 _105_ (
    .A(count[2]),
    .B(_034_),
    .Y(_035_)
  );
  INVX1 _106_ (
    .A(_035_),
    .Y(_036_)
  );
  NOR2X1 _107_ (
    .A(count[3]),
    .B(_036_),
    .Y(_000_)
  );
  XOR2X1 _108_ (
    .A(rx),
    .B(rx_q),
    .Y(_037_)
  );
  XNOR2X1 _109_ (
    .A(rx),
    .B(rx_q),
    .Y(_038_)
  );
  NOR2X1 _110_ (
    .A(idle[0]),
    .B(_037_),
    .Y(_003_[0])
  );
  AOI21X1 _111_ (
    .A(idle[0]),
    .B(idle[1]),
    .C(_037_),
    .Y(_039_)
  );
  OAI21X1 _112_ (
    .A(idle[0]),
    .B(idle[1]),
    .C(_039_),
    .Y(_040_)
  );
  INVX1 _113_ (
    .A(_040_),
    .Y(_003_[1])
  );
  AOI21X1 _114_ (
    .A(idle[0]),
    .B(idle[1]),
    .C(idle[2]),
    .Y(_041_)
  );
  NAND3X1 _115_ (
    .A(idle[0]),
    .B(idle[1]),
    .C(idle[2]),
    .Y(_042_)
  );
  NAND2X1 _116_ (
    .A(_038_),
    .B(_042_),
    .Y(_043_)
  );
  NOR2X1 _117_ (
    .A(_041_),
    .B(_043_),
    .Y(_003_[2])
  );
  OAI21X1 _118_ (
    .A(_022_),
    .B(_042_),
    .C(_038_),
    .Y(_044_)
  );
  AOI21X1 _119_ (
    .A(_022_),
    .B(_042_),
    .C(_044_),
    .Y(_003_[3])
  );
  OAI21X1 _120_ (
    .A(_022_),
    .B(_042_),
    .C(_023_),
    .Y(_045_)
  );
  NOR3X1 _121_ (
    .A(_022_),
    .B(_023_),
    .C(_042_),
    .Y(_046_)
  );
  NOR2X1 _122_ (
    .A(_037_),
    .B(_046_),
    .Y(_047_)
  );
  NAND2X1 _123_ (
    .A(_045_),
    .B(_047_),
    .Y(_048_)
  );
  INVX1 _124_ (
    .A(_048_),
    .Y(_003_[4])
  );
  NOR2X1 _125_ (
    .A(idle[5]),
    .B(_046_),
    .Y(_049_)
  );
  NAND2X1 _126_ (
    .A(idle[5]),
    .B(_046_),
    .Y(_050_)
  );
  NAND2X1 _127_ (
    .A(_038_),
    .B(_050_),
    .Y(_051_)
  );
  NOR2X1 _128_ (
    .A(_049_),
    .B(_051_),
    .Y(_003_[5])
  );
  NAND3X1 _129_ (
    .A(idle[5]),
    .B(idle[6]),
    .C(_046_),
    .Y(_052_)
  );
  OAI21X1 _130_ (
    .A(_024_),
    .B(_050_),
    .C(_038_),
    .Y(_053_)
  );
  AOI21X1 _131_ (
    .A(_024_),
    .B(_050_),
    .C(_053_),
    .Y(_003_[6])
  );
  OAI21X1 _132_ (
    .A(_024_),
    .B(_050_),
    .C(_025_),
    .Y(_054_)
  );
  NOR2X1 _133_ (
    .A(_025_),
    .B(_052_),
    .Y(_055_)
  );
  NOR2X1 _134_ (
    .A(_037_),
    .B(_055_),
    .Y(_056_)
  );
  NAND2X1 _135_ (
    .A(_054_),
    .B(_056_),
    .Y(_057_)
  );
  INVX1 _136_ (
    .A(_057_),
    .Y(_003_[7])
  );
  NOR3X1 _137_ (
    .A(_025_),
    .B(_026_),
    .C(_052_),
    .Y(_058_)
  );
  NOR2X1 _138_ (
    .A(_037_),
    .B(_058_),
    .Y(_059_)
  );
  OAI21X1 _139_ (
    .A(idle[8]),
    .B(_055_),
    .C(_059_),
    .Y(_060_)
  );
  INVX1 _140_ (
    .A(_060_),
    .Y(_003_[8])
  );
  NOR2X1 _141_ (
    .A(idle[9]),
    .B(_058_),
    .Y(_061_)
  );
  NAND2X1 _142_ (
    .A(idle[9]),
    .B(_058_),
    .Y(_062_)
  );
  NAND2X1 _143_ (
    .A(_038_),
    .B(_062_),
    .Y(_063_)
  );
  NOR2X1 _144_ (
    .A(_061_),
    .B(_063_),
    .Y(_003_[9])
  );
  NAND3X1 _145_ (
    .A(idle[9]),
    .B(idle[10]),
    .C(_058_),
    .Y(_064_)
  );
  OAI21X1 _146_ (
    .A(_027_),
    .B(_062_),
    .C(_038_),
    .Y(_065_)
  );
  AOI21X1 _147_ (
    .A(_027_),
    .B(_062_),
    .C(_065_),
    .Y(_003_[10])
  );
  OAI21X1 _148_ (
    .A(_028_),
    .B(_064_),
    .C(_038_),
    .Y(_066_)
  );
  AOI21X1 _149_ (
    .A(_028_),
    .B(_064_),
    .C(_066_),
    .Y(_003_[11])
  );
  OAI21X1 _150_ (
    .A(_028_),
    .B(_064_),
    .C(_029_),
    .Y(_067_)
  );
  NOR3X1 _151_ (
    .A(_028_),
    .B(_029_),
    .C(_064_),
    .Y(_068_)
  );
  NOR2X1 _152_ (
    .A(_037_),
    .B(_068_),
    .Y(_069_)
  );
  AND2X1 _153_ (
    .A(_067_),
    .B(_069_),
    .Y(_003_[12])
  );
  NOR2X1 _154_ (
    .A(idle[13]),
    .B(_068_),
    .Y(_070_)
  );
  NAND2X1 _155_ (
    .A(idle[13]),
    .B(_068_),
    .Y(_071_)
  );
  NAND2X1 _156_ (
    .A(_038_),
    .B(_071_),
    .Y(_072_)
  );
  NOR2X1 _157_ (
    .A(_070_),
    .B(_072_),
    .Y(_003_[13])
  );
  NAND3X1 _158_ (
    .A(idle[13]),
    .B(idle[14]),
    .C(_068_),
    .Y(_073_)
  );
  OAI21X1 _159_ (
    .A(_030_),
    .B(_071_),
    .C(_038_),
    .Y(_074_)
  );
  AOI21X1 _160_ (
    .A(_030_),
    .B(_071_),
    .C(_074_),
    .Y(_003_[14])
  );
  OAI21X1 _161_ (
    .A(_031_),
    .B(_073_),
    .C(_038_),
    .Y(_075_)
  );
  AOI21X1 _162_ (
    .A(_031_),
    .B(_073_),
    .C(_075_),
    .Y(_003_[15])
  );
  NAND2X1 _163_ (
    .A(count[3]),
    .B(_035_),
    .Y(_076_)
  );
  AOI21X1 _164_ (
    .A(count[3]),
    .B(_035_),
    .C(count[0]),
    .Y(_001_[0])
  );
  NAND2X1 _165_ (
    .A(count[1]),
    .B(count[0]),
    .Y(_077_)
  );
  AND2X1 _166_ (
    .A(_034_),
    .B(_077_),
    .Y(_001_[1])
  );
  NAND3X1 _167_ (
    .A(count[1]),
    .B(count[0]),
    .C(count[2]),
    .Y(_078_)
  );
  XNOR2X1 _168_ (
    .A(count[2]),
    .B(_077_),
    .Y(_001_[2])
  );
  NAND3X1 _169_ (
    .A(count[3]),
    .B(_036_),
    .C(_078_),
    .Y(_079_)
  );
  OAI21X1 _170_ (
    .A(count[3]),
    .B(_078_),
    .C(_079_),
    .Y(_001_[3])
  );
  XNOR2X1 _171_ (
    .A(rx_q),
    .B(crc[7]),
    .Y(_080_)
  );
  XNOR2X1 _172_ (
    .A(host_in[0]),
    .B(_080_),
    .Y(_002_[0])
  );
  XOR2X1 _173_ (
    .A(crc[0]),
    .B(host_in[1]),
    .Y(_081_)
  );
  XNOR2X1 _174_ (
    .A(_080_),
    .B(_081_),
    .Y(_002_[1])
  );
  XOR2X1 _175_ (
    .A(crc[1]),
    .B(host_in[2]),
    .Y(_082_)
  );
  XNOR2X1 _176_ (
    .A(_080_),
    .B(_082_),
    .Y(_002_[2])
  );
  XOR2X1 _177_ (
    .A(host_in[3]),
    .B(crc[2]),
    .Y(_002_[3])
  );
  XOR2X1 _178_ (
    .A(host_in[4]),
    .B(crc[3]),
    .Y(_002_[4])
  );
  XOR2X1 _179_ (
    .A(host_in[5]),
    .B(crc[4]),
    .Y(_002_[5])
  );
  XOR2X1 _180_ (
    .A(host_in[6]),
    .B(crc[5]),
    .Y(_002_[6])
  );
  XOR2X1 _181_ (
    .A(host_in[7]),
    .B(crc[6]),
    .Y(_002_[7])
  );
  OAI22X1 _182_ (
    .A(ack),
    .B(_032_),
    .C(_073_),
    .D(_031_),
    .Y(_004_)
  );
  XOR2X1 _183_ (
    .A(host_in[0]),
    .B(data_out[0]),
    .Y(_005_)
  );
  XOR2X1 _184_ (
    .A(host_in[1]),
    .B(data_out[1]),
    .Y(_006_)
  );
  XOR2X1 _185_ (
    .A(host_in[2]),
    .B(data_out[2]),
    .Y(_007_)
  );
  XOR2X1 _186_ (
    .A(host_in[3]),
    .B(data_out[3]),
    .Y(_008_)
  );
  XOR2X1 _187_ (
    .A(host_in[4]),
    .B(data_out[4]),
    .Y(_009_)
  );
  XOR2X1 _188_ (
    .A(host_in[5]),
    .B(data_out[5]),
    .Y(_010_)
  );
  XOR2X1 _189_ (
    .A(host_in[6]),
    .B(data_out[6]),
    .Y(_011_)
  );
  XOR2X1 _190_ (
    .A(host_in[7]),
    .B(data_out[7]),
    .Y(_012_)
  );
  OAI21X1 _191_ (
    .A(ack),
    .B(_033_),
    .C(_076_),
    .Y(_013_)
  );
  MUX2X1 _192_ (
    .A(data_out[0]),
    .B(shift[0]),
    .S(_076_),
    .Y(_083_)
  );
  INVX1 _193_ (
    .A(_083_),
    .Y(_014_)
  );
  MUX2X1 _194_ (
    .A(data_out[1]),
    .B(shift[1]),
    .S(_076_),
    .Y(_084_)
  );
  INVX1 _195_ (
    .A(_084_),
    .Y(_015_)
  );
  MUX2X1 _196_ (
    .A(data_out[2]),
    .B(shift[2]),
    .S(_076_),
    .Y(_085_)
  );
  INVX1 _197_ (
    .A(_085_),
    .Y(_016_)
  );
  MUX2X1 _198_ (
    .A(data_out[3]),
    .B(shift[3]),
    .S(_076_),
    .Y(_086_)
  );
  INVX1 _199_ (
    .A(_086_),
    .Y(_017_)
  );
  MUX2X1 _200_ (
    .A(data_out[4]),
    .B(shift[4]),
    .S(_076_),
    .Y(_087_)
  );
  INVX1 _201_ (
    .A(_087_),
    .Y(_018_)
  );
  MUX2X1 _202_ (
    .A(data_out[5]),
    .B(shift[5]),
    .S(_076_),
    .Y(_088_)
  );
  INVX1 _203_ (
    .A(_088_),
    .Y(_019_)
  );
  MUX2X1 _204_ (
    .A(data_out[6]),
    .B(shift[6]),
    .S(_076_),
    .Y(_089_)
  );
  INVX1 _205_ (
    .A(_089_),
    .Y(_020_)
  );
  MUX2X1 _206_ (
    .A(data_out[7]),
    .B(shift[7]),
    .S(_076_),
    .Y(_090_)
  );
  INVX1 _207_ (
    .A(_090_),
    .Y(_021_)
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
    .D(_014_),
    .Q(data_out[0]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[1]  (
    .CLK(clk),
    .D(_015_),
    .Q(data_out[1]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[2]  (
    .CLK(clk),
    .D(_016_),
    .Q(data_out[2]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[3]  (
    .CLK(clk),
    .D(_017_),
    .Q(data_out[3]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[4]  (
    .CLK(clk),
    .D(_018_),
    .Q(data_out[4]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[5]  (
    .CLK(clk),
    .D(_019_),
    .Q(data_out[5]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[6]  (
    .CLK(clk),
    .D(_020_),
    .Q(data_out[6]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \data_out_reg[7]  (
    .CLK(clk),
    .D(_021_),
    .Q(data_out[7]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  LATCH \hold[0].host_latch  (
    .CLK(clk_n),
    .D(_005_),
    .Q(host_out[0])
  );
  LATCH \hold[1].host_latch  (
    .CLK(clk_n),
    .D(_006_),
    .Q(host_out[1])
  );
  LATCH \hold[2].host_latch  (
    .CLK(clk_n),
    .D(_007_),
    .Q(host_out[2])
  );
  LATCH \hold[3].host_latch  (
    .CLK(clk_n),
    .D(_008_),
    .Q(host_out[3])
  );
  LATCH \hold[4].host_latch  (
    .CLK(clk_n),
    .D(_009_),
    .Q(host_out[4])
  );
  LATCH \hold[5].host_latch  (
    .CLK(clk_n),
    .D(_010_),
    .Q(host_out[5])
  );
  LATCH \hold[6].host_latch  (
    .CLK(clk_n),
    .D(_011_),
    .Q(host_out[6])
  );
  LATCH \hold[7].host_latch  (
    .CLK(clk_n),
    .D(_012_),
    .Q(host_out[7])
  );
  DFFSR \idle_reg[0]  (
    .CLK(clk),
    .D(_003_[0]),
    .Q(idle[0]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[10]  (
    .CLK(clk),
    .D(_003_[10]),
    .Q(idle[10]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[11]  (
    .CLK(clk),
    .D(_003_[11]),
    .Q(idle[11]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[12]  (
    .CLK(clk),
    .D(_003_[12]),
    .Q(idle[12]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[13]  (
    .CLK(clk),
    .D(_003_[13]),
    .Q(idle[13]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[14]  (
    .CLK(clk),
    .D(_003_[14]),
    .Q(idle[14]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[15]  (
    .CLK(clk),
    .D(_003_[15]),
    .Q(idle[15]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[1]  (
    .CLK(clk),
    .D(_003_[1]),
    .Q(idle[1]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[2]  (
    .CLK(clk),
    .D(_003_[2]),
    .Q(idle[2]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[3]  (
    .CLK(clk),
    .D(_003_[3]),
    .Q(idle[3]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[4]  (
    .CLK(clk),
    .D(_003_[4]),
    .Q(idle[4]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[5]  (
    .CLK(clk),
    .D(_003_[5]),
    .Q(idle[5]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[6]  (
    .CLK(clk),
    .D(_003_[6]),
    .Q(idle[6]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[7]  (
    .CLK(clk),
    .D(_003_[7]),
    .Q(idle[7]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[8]  (
    .CLK(clk),
    .D(_003_[8]),
    .Q(idle[8]),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR \idle_reg[9]  (
    .CLK(clk),
    .D(_003_[9]),
    .Q(idle[9]),
    .R(rst_sync_n),
    .S(1'h1)
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
  DFFSR timeout_reg (
    .CLK(clk),
    .D(_004_),
    .Q(timeout),
    .R(rst_sync_n),
    .S(1'h1)
  );
  DFFSR valid_reg (
    .CLK(clk),
    .D(_013_),
    .Q(valid),
    .R(rst_sync_n),
    .S(1'h1)
  );
endmodule
