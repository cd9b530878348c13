// Gate-level netlist of twoclocks, made by examples/make_netlists.sh from rtl/twoclocks.v.
// Library: OSU 0.35 um standard cells.  Do not edit; regenerate instead.

module twoclocks(sys_clk, io_clk, sys_in, io_in, sys_out, io_out, half_out, io_event, sys_event);
  wire _000_;
  wire [7:0] _001_;
  wire _002_;
  wire [7:0] _003_;
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
  wire _091_;
  wire _092_;
  wire _093_;
  wire _094_;
  wire _095_;
  wire _096_;
  wire _097_;
  wire _098_;
  wire _099_;
  wire _100_;
  wire _101_;
  wire _102_;
  wire _103_;
  wire _104_;
  wire _105_;
  wire _106_;
  wire _107_;
  wire _108_;
  wire _109_;
  wire _110_;
  wire _111_;
  wire _112_;
  wire _113_;
  wire _114_;
  wire _115_;
  wire _116_;
  wire _117_;
  wire _118_;
  wire _119_;
  wire _120_;
  wire _121_;
  wire _122_;
  wire _123_;
  wire _124_;
  wire _125_;
  wire _126_;
  wire _127_;
  wire _128_;
  wire _129_;
  wire _130_;
  wire _131_;
  wire _132_;
  wire _133_;
  wire _134_;
  wire _135_;
  wire _136_;
  wire _137_;
  wire _138_;
  wire _139_;
  wire _140_;
  wire _141_;
  wire _142_;
  wire _143_;
  wire _144_;
  wire _145_;
  wire _146_;
  wire _147_;
  wire _148_;
  wire _149_;
  wire _150_;
  wire _151_;
  wire _152_;
  wire _153_;
  wire _154_;
  wire _155_;
  wire _156_;
  wire _157_;
  wire _158_;
  wire [7:0] _159_;
  wire [7:0] _160_;
  wire [7:0] _161_;
  wire [7:0] _162_;
  wire [7:0] _163_;
  wire [7:0] _164_;
  wire [7:0] _165_;
  wire [7:0] _166_;
  wire [7:0] _167_;
  wire [7:0] _168_;
  wire [7:0] _169_;
  wire [7:0] half_acc;
  wire half_clk;
  output [7:0] half_out;
  wire [7:0] half_out;
  input io_clk;
  wire io_clk;
  wire [7:0] io_cnt;
  wire [7:0] io_data;
  output io_event;
  wire io_event;
  input [7:0] io_in;
  wire [7:0] io_in;
  output [7:0] io_out;
  wire [7:0] io_out;
  wire io_toggle;
  wire sync_io_d;
  wire sync_io_meta;
  wire sync_io_q;
  wire sync_sys_d;
  wire sync_sys_meta;
  wire sync_sys_q;
  input sys_clk;
  wire sys_clk;
  wire [7:0] sys_cnt;
  wire [7:0] sys_data;
  output sys_event;
  wire sys_event;
  input [7:0] sys_in;
  wire [7:0] sys_in;
  output [7:0] sys_out;
  wire [7:0] sys_out;
  wire sys_toggle;
  INVX1 _170_ (
    .A(sys_cnt[5]),
    .Y(_005_)
  );
  INVX1 _171_ (
    .A(half_acc[0]),
    .Y(_006_)
  );
  INVX1 _172_ (
    .A(sys_cnt[0]),
    .Y(_159_[0])
  );
  INVX1 _173_ (
    .A(sys_cnt[3]),
    .Y(_007_)
  );
  INVX1 _174_ (
    .A(io_cnt[0]),
    .Y(_161_[0])
  );
  INVX1 _175_ (
    .A(half_clk),
    .Y(_000_)
  );
  INVX1 _176_ (
    .A(io_cnt[3]),
    .Y(_008_)
  );
  INVX1 _177_ (
    .A(io_cnt[6]),
    .Y(_009_)
  );
  NAND2X1 _178_ (
    .A(sys_cnt[1]),
    .B(sys_cnt[0]),
    .Y(_010_)
  );
  NAND3X1 _179_ (
    .A(sys_cnt[1]),
    .B(sys_cnt[0]),
    .C(sys_cnt[2]),
    .Y(_011_)
  );
  NOR2X1 _180_ (
    .A(_007_),
    .B(_011_),
    .Y(_012_)
  );
  NAND2X1 _181_ (
    .A(sys_cnt[4]),
    .B(_012_),
    .Y(_013_)
  );
  XOR2X1 _182_ (
    .A(sys_cnt[4]),
    .B(_012_),
    .Y(_160_[4])
  );
  NOR2X1 _183_ (
    .A(_005_),
    .B(_013_),
    .Y(_014_)
  );
  XNOR2X1 _184_ (
    .A(sys_cnt[5]),
    .B(_013_),
    .Y(_160_[5])
  );
  AND2X1 _185_ (
    .A(sys_cnt[6]),
    .B(_014_),
    .Y(_015_)
  );
  XOR2X1 _186_ (
    .A(sys_cnt[6]),
    .B(_014_),
    .Y(_160_[6])
  );
  NAND2X1 _187_ (
    .A(sys_cnt[7]),
    .B(_015_),
    .Y(_016_)
  );
  XOR2X1 _188_ (
    .A(sys_cnt[7]),
    .B(_015_),
    .Y(_160_[7])
  );
  NAND2X1 _189_ (
    .A(io_data[0]),
    .B(sys_data[0]),
    .Y(_017_)
  );
  XOR2X1 _190_ (
    .A(io_data[0]),
    .B(sys_data[0]),
    .Y(_167_[0])
  );
  XOR2X1 _191_ (
    .A(sync_sys_d),
    .B(sync_sys_q),
    .Y(sys_event)
  );
  OR2X1 _192_ (
    .A(_167_[0]),
    .B(sys_event),
    .Y(_018_)
  );
  XOR2X1 _193_ (
    .A(_167_[0]),
    .B(sys_event),
    .Y(_019_)
  );
  OR2X1 _194_ (
    .A(sys_cnt[0]),
    .B(_019_),
    .Y(_020_)
  );
  XNOR2X1 _195_ (
    .A(sys_cnt[0]),
    .B(_019_),
    .Y(_021_)
  );
  XNOR2X1 _196_ (
    .A(half_acc[0]),
    .B(_021_),
    .Y(_169_[0])
  );
  OAI21X1 _197_ (
    .A(_006_),
    .B(_021_),
    .C(_020_),
    .Y(_022_)
  );
  NAND2X1 _198_ (
    .A(io_data[1]),
    .B(sys_data[1]),
    .Y(_023_)
  );
  XOR2X1 _199_ (
    .A(io_data[1]),
    .B(sys_data[1]),
    .Y(_024_)
  );
  NAND2X1 _200_ (
    .A(half_acc[1]),
    .B(_024_),
    .Y(_025_)
  );
  XNOR2X1 _201_ (
    .A(half_acc[1]),
    .B(_024_),
    .Y(_026_)
  );
  XOR2X1 _202_ (
    .A(sys_cnt[1]),
    .B(_026_),
    .Y(_027_)
  );
  AND2X1 _203_ (
    .A(_018_),
    .B(_027_),
    .Y(_028_)
  );
  XOR2X1 _204_ (
    .A(_018_),
    .B(_027_),
    .Y(_029_)
  );
  XOR2X1 _205_ (
    .A(_022_),
    .B(_029_),
    .Y(_169_[1])
  );
  AOI21X1 _206_ (
    .A(_022_),
    .B(_029_),
    .C(_028_),
    .Y(_030_)
  );
  OAI21X1 _207_ (
    .A(sys_cnt[1]),
    .B(_026_),
    .C(_025_),
    .Y(_031_)
  );
  AND2X1 _208_ (
    .A(io_data[2]),
    .B(sys_data[2]),
    .Y(_032_)
  );
  XOR2X1 _209_ (
    .A(io_data[2]),
    .B(sys_data[2]),
    .Y(_033_)
  );
  INVX1 _210_ (
    .A(_033_),
    .Y(_034_)
  );
  NAND2X1 _211_ (
    .A(half_acc[2]),
    .B(_033_),
    .Y(_035_)
  );
  XNOR2X1 _212_ (
    .A(half_acc[2]),
    .B(_033_),
    .Y(_036_)
  );
  XOR2X1 _213_ (
    .A(sys_cnt[2]),
    .B(_036_),
    .Y(_037_)
  );
  NAND2X1 _214_ (
    .A(_031_),
    .B(_037_),
    .Y(_038_)
  );
  XNOR2X1 _215_ (
    .A(_031_),
    .B(_037_),
    .Y(_039_)
  );
  XOR2X1 _216_ (
    .A(_030_),
    .B(_039_),
    .Y(_169_[2])
  );
  OAI21X1 _217_ (
    .A(_030_),
    .B(_039_),
    .C(_038_),
    .Y(_040_)
  );
  OAI21X1 _218_ (
    .A(sys_cnt[2]),
    .B(_036_),
    .C(_035_),
    .Y(_041_)
  );
  NAND2X1 _219_ (
    .A(io_data[3]),
    .B(sys_data[3]),
    .Y(_042_)
  );
  XOR2X1 _220_ (
    .A(io_data[3]),
    .B(sys_data[3]),
    .Y(_043_)
  );
  NAND2X1 _221_ (
    .A(half_acc[3]),
    .B(_043_),
    .Y(_044_)
  );
  XNOR2X1 _222_ (
    .A(half_acc[3]),
    .B(_043_),
    .Y(_045_)
  );
  XNOR2X1 _223_ (
    .A(_007_),
    .B(_045_),
    .Y(_046_)
  );
  OR2X1 _224_ (
    .A(_041_),
    .B(_046_),
    .Y(_047_)
  );
  NAND2X1 _225_ (
    .A(_041_),
    .B(_046_),
    .Y(_048_)
  );
  INVX1 _226_ (
    .A(_048_),
    .Y(_049_)
  );
  NAND2X1 _227_ (
    .A(_047_),
    .B(_048_),
    .Y(_050_)
  );
  XNOR2X1 _228_ (
    .A(_040_),
    .B(_050_),
    .Y(_169_[3])
  );
  OAI21X1 _229_ (
    .A(sys_cnt[3]),
    .B(_045_),
    .C(_044_),
    .Y(_051_)
  );
  NAND2X1 _230_ (
    .A(io_data[4]),
    .B(sys_data[4]),
    .Y(_052_)
  );
  NOR2X1 _231_ (
    .A(io_data[4]),
    .B(sys_data[4]),
    .Y(_053_)
  );
  XOR2X1 _232_ (
    .A(io_data[4]),
    .B(sys_data[4]),
    .Y(_054_)
  );
  NAND2X1 _233_ (
    .A(half_acc[4]),
    .B(_054_),
    .Y(_055_)
  );
  XNOR2X1 _234_ (
    .A(half_acc[4]),
    .B(_054_),
    .Y(_056_)
  );
  XOR2X1 _235_ (
    .A(sys_cnt[4]),
    .B(_056_),
    .Y(_057_)
  );
  NAND2X1 _236_ (
    .A(_051_),
    .B(_057_),
    .Y(_058_)
  );
  XNOR2X1 _237_ (
    .A(_051_),
    .B(_057_),
    .Y(_059_)
  );
  OAI21X1 _238_ (
    .A(_040_),
    .B(_049_),
    .C(_047_),
    .Y(_060_)
  );
  XOR2X1 _239_ (
    .A(_059_),
    .B(_060_),
    .Y(_169_[4])
  );
  OAI21X1 _240_ (
    .A(_059_),
    .B(_060_),
    .C(_058_),
    .Y(_061_)
  );
  OAI21X1 _241_ (
    .A(sys_cnt[4]),
    .B(_056_),
    .C(_055_),
    .Y(_062_)
  );
  XOR2X1 _242_ (
    .A(io_data[5]),
    .B(sys_data[5]),
    .Y(_063_)
  );
  NAND2X1 _243_ (
    .A(half_acc[5]),
    .B(_063_),
    .Y(_064_)
  );
  XNOR2X1 _244_ (
    .A(half_acc[5]),
    .B(_063_),
    .Y(_065_)
  );
  XNOR2X1 _245_ (
    .A(_005_),
    .B(_065_),
    .Y(_066_)
  );
  OR2X1 _246_ (
    .A(_062_),
    .B(_066_),
    .Y(_067_)
  );
  AND2X1 _247_ (
    .A(_062_),
    .B(_066_),
    .Y(_068_)
  );
  NAND2X1 _248_ (
    .A(_062_),
    .B(_066_),
    .Y(_069_)
  );
  NAND2X1 _249_ (
    .A(_067_),
    .B(_069_),
    .Y(_070_)
  );
  XNOR2X1 _250_ (
    .A(_061_),
    .B(_070_),
    .Y(_169_[5])
  );
  AOI21X1 _251_ (
    .A(_061_),
    .B(_067_),
    .C(_068_),
    .Y(_071_)
  );
  OAI21X1 _252_ (
    .A(sys_cnt[5]),
    .B(_065_),
    .C(_064_),
    .Y(_072_)
  );
  NAND2X1 _253_ (
    .A(io_data[6]),
    .B(sys_data[6]),
    .Y(_073_)
  );
  NOR2X1 _254_ (
    .A(io_data[6]),
    .B(sys_data[6]),
    .Y(_074_)
  );
  XOR2X1 _255_ (
    .A(io_data[6]),
    .B(sys_data[6]),
    .Y(_075_)
  );
  NOR2X1 _256_ (
    .A(half_acc[6]),
    .B(_075_),
    .Y(_076_)
  );
  NAND2X1 _257_ (
    .A(half_acc[6]),
    .B(_075_),
    .Y(_077_)
  );
  XOR2X1 _258_ (
    .A(half_acc[6]),
    .B(_075_),
    .Y(_078_)
  );
  XNOR2X1 _259_ (
    .A(sys_cnt[6]),
    .B(_078_),
    .Y(_079_)
  );
  NOR2X1 _260_ (
    .A(_072_),
    .B(_079_),
    .Y(_080_)
  );
  NAND2X1 _261_ (
    .A(_072_),
    .B(_079_),
    .Y(_081_)
  );
  XOR2X1 _262_ (
    .A(_072_),
    .B(_079_),
    .Y(_082_)
  );
  XNOR2X1 _263_ (
    .A(_071_),
    .B(_082_),
    .Y(_169_[6])
  );
  OAI21X1 _264_ (
    .A(_071_),
    .B(_080_),
    .C(_081_),
    .Y(_083_)
  );
  OAI21X1 _265_ (
    .A(sys_cnt[6]),
    .B(_076_),
    .C(_077_),
    .Y(_084_)
  );
  XOR2X1 _266_ (
    .A(half_acc[7]),
    .B(io_data[7]),
    .Y(_001_[7])
  );
  XOR2X1 _267_ (
    .A(sys_cnt[7]),
    .B(sys_data[7]),
    .Y(_085_)
  );
  XNOR2X1 _268_ (
    .A(_001_[7]),
    .B(_085_),
    .Y(_086_)
  );
  XNOR2X1 _269_ (
    .A(_084_),
    .B(_086_),
    .Y(_087_)
  );
  XNOR2X1 _270_ (
    .A(_083_),
    .B(_087_),
    .Y(_169_[7])
  );
  XOR2X1 _271_ (
    .A(sys_cnt[0]),
    .B(sys_in[0]),
    .Y(_003_[0])
  );
  XOR2X1 _272_ (
    .A(sys_cnt[1]),
    .B(sys_in[1]),
    .Y(_003_[1])
  );
  XOR2X1 _273_ (
    .A(sys_in[2]),
    .B(sys_cnt[2]),
    .Y(_003_[2])
  );
  XOR2X1 _274_ (
    .A(sys_cnt[3]),
    .B(sys_in[3]),
    .Y(_003_[3])
  );
  XOR2X1 _275_ (
    .A(sys_cnt[4]),
    .B(sys_in[4]),
    .Y(_003_[4])
  );
  XOR2X1 _276_ (
    .A(sys_cnt[5]),
    .B(sys_in[5]),
    .Y(_003_[5])
  );
  XOR2X1 _277_ (
    .A(sys_cnt[6]),
    .B(sys_in[6]),
    .Y(_003_[6])
  );
  XOR2X1 _278_ (
    .A(sys_cnt[7]),
    .B(sys_in[7]),
    .Y(_003_[7])
  );
  XNOR2X1 _279_ (
    .A(sys_toggle),
    .B(_016_),
    .Y(_004_)
  );
  NAND2X1 _280_ (
    .A(io_cnt[0]),
    .B(io_cnt[1]),
    .Y(_088_)
  );
  NAND3X1 _281_ (
    .A(io_cnt[0]),
    .B(io_cnt[1]),
    .C(io_cnt[2]),
    .Y(_089_)
  );
  NOR2X1 _282_ (
    .A(_008_),
    .B(_089_),
    .Y(_090_)
  );
  XOR2X1 _283_ (
    .A(io_toggle),
    .B(_090_),
    .Y(_002_)
  );
  XOR2X1 _284_ (
    .A(sync_io_d),
    .B(sync_io_q),
    .Y(io_event)
  );
  XOR2X1 _285_ (
    .A(half_acc[0]),
    .B(io_data[0]),
    .Y(_001_[0])
  );
  XOR2X1 _286_ (
    .A(half_acc[1]),
    .B(io_data[1]),
    .Y(_001_[1])
  );
  XOR2X1 _287_ (
    .A(half_acc[2]),
    .B(io_data[2]),
    .Y(_001_[2])
  );
  XOR2X1 _288_ (
    .A(half_acc[3]),
    .B(io_data[3]),
    .Y(_001_[3])
  );
  XOR2X1 _289_ (
    .A(half_acc[4]),
    .B(io_data[4]),
    .Y(_001_[4])
  );
  XOR2X1 _290_ (
    .A(half_acc[5]),
    .B(io_data[5]),
    .Y(_001_[5])
  );
  XOR2X1 _291_ (
    .A(half_acc[6]),
    .B(io_data[6]),
    .Y(_001_[6])
  );
  XOR2X1 _292_ (
    .A(io_cnt[0]),
    .B(io_cnt[1]),
    .Y(_162_[1])
  );
  XNOR2X1 _293_ (
    .A(io_cnt[2]),
    .B(_088_),
    .Y(_162_[2])
  );
  XNOR2X1 _294_ (
    .A(io_cnt[3]),
    .B(_089_),
    .Y(_162_[3])
  );
  NAND2X1 _295_ (
    .A(io_cnt[4]),
    .B(_090_),
    .Y(_091_)
  );
  XOR2X1 _296_ (
    .A(io_cnt[4]),
    .B(_090_),
    .Y(_162_[4])
  );
  NAND3X1 _297_ (
    .A(io_cnt[4]),
    .B(io_cnt[5]),
    .C(_090_),
    .Y(_092_)
  );
  XNOR2X1 _298_ (
    .A(io_cnt[5]),
    .B(_091_),
    .Y(_162_[5])
  );
  NOR2X1 _299_ (
    .A(_009_),
    .B(_092_),
    .Y(_093_)
  );
  XNOR2X1 _300_ (
    .A(io_cnt[6]),
    .B(_092_),
    .Y(_162_[6])
  );
  XOR2X1 _301_ (
    .A(io_cnt[7]),
    .B(_093_),
    .Y(_162_[7])
  );
  NAND2X1 _302_ (
    .A(io_cnt[0]),
    .B(io_in[0]),
    .Y(_094_)
  );
  NAND2X1 _303_ (
    .A(io_cnt[1]),
    .B(io_in[1]),
    .Y(_095_)
  );
  NOR2X1 _304_ (
    .A(io_cnt[1]),
    .B(io_in[1]),
    .Y(_096_)
  );
  XOR2X1 _305_ (
    .A(io_cnt[1]),
    .B(io_in[1]),
    .Y(_097_)
  );
  XNOR2X1 _306_ (
    .A(_094_),
    .B(_097_),
    .Y(_164_[1])
  );
  OAI21X1 _307_ (
    .A(_094_),
    .B(_096_),
    .C(_095_),
    .Y(_098_)
  );
  INVX1 _308_ (
    .A(_098_),
    .Y(_099_)
  );
  NAND2X1 _309_ (
    .A(io_cnt[2]),
    .B(io_in[2]),
    .Y(_100_)
  );
  XNOR2X1 _310_ (
    .A(io_cnt[2]),
    .B(io_in[2]),
    .Y(_101_)
  );
  XNOR2X1 _311_ (
    .A(_098_),
    .B(_101_),
    .Y(_164_[2])
  );
  OAI21X1 _312_ (
    .A(_099_),
    .B(_101_),
    .C(_100_),
    .Y(_102_)
  );
  NAND2X1 _313_ (
    .A(io_cnt[3]),
    .B(io_in[3]),
    .Y(_103_)
  );
  XNOR2X1 _314_ (
    .A(io_cnt[3]),
    .B(io_in[3]),
    .Y(_104_)
  );
  XNOR2X1 _315_ (
    .A(_102_),
    .B(_104_),
    .Y(_164_[3])
  );
  NAND2X1 _316_ (
    .A(io_cnt[4]),
    .B(io_in[4]),
    .Y(_105_)
  );
  NOR2X1 _317_ (
    .A(io_cnt[4]),
    .B(io_in[4]),
    .Y(_106_)
  );
  XOR2X1 _318_ (
    .A(io_cnt[4]),
    .B(io_in[4]),
    .Y(_107_)
  );
  OAI21X1 _319_ (
    .A(io_cnt[3]),
    .B(io_in[3]),
    .C(_102_),
    .Y(_108_)
  );
  AND2X1 _320_ (
    .A(_103_),
    .B(_108_),
    .Y(_109_)
  );
  XNOR2X1 _321_ (
    .A(_107_),
    .B(_109_),
    .Y(_164_[4])
  );
  OAI21X1 _322_ (
    .A(_106_),
    .B(_109_),
    .C(_105_),
    .Y(_110_)
  );
  NAND2X1 _323_ (
    .A(io_cnt[5]),
    .B(io_in[5]),
    .Y(_111_)
  );
  XNOR2X1 _324_ (
    .A(io_cnt[5]),
    .B(io_in[5]),
    .Y(_112_)
  );
  XNOR2X1 _325_ (
    .A(_110_),
    .B(_112_),
    .Y(_164_[5])
  );
  NAND2X1 _326_ (
    .A(io_cnt[6]),
    .B(io_in[6]),
    .Y(_113_)
  );
  NOR2X1 _327_ (
    .A(io_cnt[6]),
    .B(io_in[6]),
    .Y(_114_)
  );
  XOR2X1 _328_ (
    .A(io_cnt[6]),
    .B(io_in[6]),
    .Y(_115_)
  );
  OAI21X1 _329_ (
    .A(io_cnt[5]),
    .B(io_in[5]),
    .C(_110_),
    .Y(_116_)
  );
  AND2X1 _330_ (
    .A(_111_),
    .B(_116_),
    .Y(_117_)
  );
  XNOR2X1 _331_ (
    .A(_115_),
    .B(_117_),
    .Y(_164_[6])
  );
  OAI21X1 _332_ (
    .A(_114_),
    .B(_117_),
    .C(_113_),
    .Y(_118_)
  );
  XNOR2X1 _333_ (
    .A(io_cnt[7]),
    .B(io_in[7]),
    .Y(_119_)
  );
  XNOR2X1 _334_ (
    .A(_118_),
    .B(_119_),
    .Y(_164_[7])
  );
  XOR2X1 _335_ (
    .A(io_cnt[0]),
    .B(io_in[0]),
    .Y(_163_[0])
  );
  NAND2X1 _336_ (
    .A(half_acc[0]),
    .B(sys_data[0]),
    .Y(_120_)
  );
  NAND2X1 _337_ (
    .A(half_acc[1]),
    .B(sys_data[1]),
    .Y(_121_)
  );
  NOR2X1 _338_ (
    .A(half_acc[1]),
    .B(sys_data[1]),
    .Y(_122_)
  );
  XOR2X1 _339_ (
    .A(half_acc[1]),
    .B(sys_data[1]),
    .Y(_123_)
  );
  XNOR2X1 _340_ (
    .A(_120_),
    .B(_123_),
    .Y(_166_[1])
  );
  OAI21X1 _341_ (
    .A(_120_),
    .B(_122_),
    .C(_121_),
    .Y(_124_)
  );
  INVX1 _342_ (
    .A(_124_),
    .Y(_125_)
  );
  NAND2X1 _343_ (
    .A(half_acc[2]),
    .B(sys_data[2]),
    .Y(_126_)
  );
  XNOR2X1 _344_ (
    .A(half_acc[2]),
    .B(sys_data[2]),
    .Y(_127_)
  );
  XNOR2X1 _345_ (
    .A(_124_),
    .B(_127_),
    .Y(_166_[2])
  );
  OAI21X1 _346_ (
    .A(_125_),
    .B(_127_),
    .C(_126_),
    .Y(_128_)
  );
  NAND2X1 _347_ (
    .A(half_acc[3]),
    .B(sys_data[3]),
    .Y(_129_)
  );
  XNOR2X1 _348_ (
    .A(half_acc[3]),
    .B(sys_data[3]),
    .Y(_130_)
  );
  XNOR2X1 _349_ (
    .A(_128_),
    .B(_130_),
    .Y(_166_[3])
  );
  NAND2X1 _350_ (
    .A(half_acc[4]),
    .B(sys_data[4]),
    .Y(_131_)
  );
  NOR2X1 _351_ (
    .A(half_acc[4]),
    .B(sys_data[4]),
    .Y(_132_)
  );
  XOR2X1 _352_ (
    .A(half_acc[4]),
    .B(sys_data[4]),
    .Y(_133_)
  );
  OAI21X1 _353_ (
    .A(half_acc[3]),
    .B(sys_data[3]),
    .C(_128_),
    .Y(_134_)
  );
  AND2X1 _354_ (
    .A(_129_),
    .B(_134_),
    .Y(_135_)
  );
  XNOR2X1 _355_ (
    .A(_133_),
    .B(_135_),
    .Y(_166_[4])
  );
  OAI21X1 _356_ (
    .A(_132_),
    .B(_135_),
    .C(_131_),
    .Y(_136_)
  );
  NAND2X1 _357_ (
    .A(half_acc[5]),
    .B(sys_data[5]),
    .Y(_137_)
  );
  XNOR2X1 _358_ (
    .A(half_acc[5]),
    .B(sys_data[5]),
    .Y(_138_)
  );
  XNOR2X1 _359_ (
    .A(_136_),
    .B(_138_),
    .Y(_166_[5])
  );
  NAND2X1 _360_ (
    .A(half_acc[6]),
    .B(sys_data[6]),
    .Y(_139_)
  );
  NOR2X1 _361_ (
    .A(half_acc[6]),
    .B(sys_data[6]),
    .Y(_140_)
  );
  XOR2X1 _362_ (
    .A(half_acc[6]),
    .B(sys_data[6]),
    .Y(_141_)
  );
  OAI21X1 _363_ (
    .A(half_acc[5]),
    .B(sys_data[5]),
    .C(_136_),
    .Y(_142_)
  );
  AND2X1 _364_ (
    .A(_137_),
    .B(_142_),
    .Y(_143_)
  );
  XNOR2X1 _365_ (
    .A(_141_),
    .B(_143_),
    .Y(_166_[6])
  );
  OAI21X1 _366_ (
    .A(_140_),
    .B(_143_),
    .C(_139_),
    .Y(_144_)
  );
  XNOR2X1 _367_ (
    .A(half_acc[7]),
    .B(sys_data[7]),
    .Y(_145_)
  );
  XNOR2X1 _368_ (
    .A(_144_),
    .B(_145_),
    .Y(_166_[7])
  );
  XOR2X1 _369_ (
    .A(half_acc[0]),
    .B(sys_data[0]),
    .Y(_165_[0])
  );
  NAND3X1 _370_ (
    .A(io_data[0]),
    .B(sys_data[0]),
    .C(_024_),
    .Y(_146_)
  );
  XNOR2X1 _371_ (
    .A(_017_),
    .B(_024_),
    .Y(_168_[1])
  );
  NAND2X1 _372_ (
    .A(_023_),
    .B(_146_),
    .Y(_147_)
  );
  AOI21X1 _373_ (
    .A(_023_),
    .B(_146_),
    .C(_034_),
    .Y(_148_)
  );
  NOR2X1 _374_ (
    .A(_033_),
    .B(_147_),
    .Y(_149_)
  );
  NOR2X1 _375_ (
    .A(_148_),
    .B(_149_),
    .Y(_168_[2])
  );
  NOR2X1 _376_ (
    .A(_032_),
    .B(_148_),
    .Y(_150_)
  );
  XNOR2X1 _377_ (
    .A(_043_),
    .B(_150_),
    .Y(_168_[3])
  );
  OAI22X1 _378_ (
    .A(io_data[3]),
    .B(sys_data[3]),
    .C(_032_),
    .D(_148_),
    .Y(_151_)
  );
  AND2X1 _379_ (
    .A(_042_),
    .B(_151_),
    .Y(_152_)
  );
  XNOR2X1 _380_ (
    .A(_054_),
    .B(_152_),
    .Y(_168_[4])
  );
  OAI21X1 _381_ (
    .A(_053_),
    .B(_152_),
    .C(_052_),
    .Y(_153_)
  );
  XOR2X1 _382_ (
    .A(_063_),
    .B(_153_),
    .Y(_168_[5])
  );
  OAI21X1 _383_ (
    .A(io_data[5]),
    .B(sys_data[5]),
    .C(_153_),
    .Y(_154_)
  );
  INVX1 _384_ (
    .A(_154_),
    .Y(_155_)
  );
  AOI21X1 _385_ (
    .A(io_data[5]),
    .B(sys_data[5]),
    .C(_155_),
    .Y(_156_)
  );
  XNOR2X1 _386_ (
    .A(_075_),
    .B(_156_),
    .Y(_168_[6])
  );
  OAI21X1 _387_ (
    .A(_074_),
    .B(_156_),
    .C(_073_),
    .Y(_157_)
  );
  XNOR2X1 _388_ (
    .A(io_data[7]),
    .B(sys_data[7]),
    .Y(_158_)
  );
  XNOR2X1 _389_ (
    .A(_157_),
    .B(_158_),
    .Y(_168_[7])
  );
  XOR2X1 _390_ (
    .A(sys_cnt[1]),
    .B(sys_cnt[0]),
    .Y(_160_[1])
  );
  XNOR2X1 _391_ (
    .A(sys_cnt[2]),
    .B(_010_),
    .Y(_160_[2])
  );
  XNOR2X1 _392_ (
    .A(sys_cnt[3]),
    .B(_011_),
    .Y(_160_[3])
  );
  DFFPOSX1 \half_acc_reg[0]  (
    .CLK(half_clk),
    .D(_165_[0]),
    .Q(half_acc[0])
  );
  DFFPOSX1 \half_acc_reg[1]  (
    .CLK(half_clk),
    .D(_166_[1]),
    .Q(half_acc[1])
  );
  DFFPOSX1 \half_acc_reg[2]  (
    .CLK(half_clk),
    .D(_166_[2]),
    .Q(half_acc[2])
  );
  DFFPOSX1 \half_acc_reg[3]  (
    .CLK(half_clk),
    .D(_166_[3]),
    .Q(half_acc[3])
  );
  DFFPOSX1 \half_acc_reg[4]  (
    .CLK(half_clk),
    .D(_166_[4]),
    .Q(half_acc[4])
  );
  DFFPOSX1 \half_acc_reg[5]  (
    .CLK(half_clk),
    .D(_166_[5]),
    .Q(half_acc[5])
  );
  DFFPOSX1 \half_acc_reg[6]  (
    .CLK(half_clk),
    .D(_166_[6]),
    .Q(half_acc[6])
  );
  DFFPOSX1 \half_acc_reg[7]  (
    .CLK(half_clk),
    .D(_166_[7]),
    .Q(half_acc[7])
  );
  DFFPOSX1 half_clk_reg (
    .CLK(sys_clk),
    .D(_000_),
    .Q(half_clk)
  );
  DFFPOSX1 \half_out_reg[0]  (
    .CLK(half_clk),
    .D(_001_[0]),
    .Q(half_out[0])
  );
  DFFPOSX1 \half_out_reg[1]  (
    .CLK(half_clk),
    .D(_001_[1]),
    .Q(half_out[1])
  );
  DFFPOSX1 \half_out_reg[2]  (
    .CLK(half_clk),
    .D(_001_[2]),
    .Q(half_out[2])
  );
  DFFPOSX1 \half_out_reg[3]  (
    .CLK(half_clk),
    .D(_001_[3]),
    .Q(half_out[3])
  );
  DFFPOSX1 \half_out_reg[4]  (
    .CLK(half_clk),
    .D(_001_[4]),
    .Q(half_out[4])
  );
  DFFPOSX1 \half_out_reg[5]  (
    .CLK(half_clk),
    .D(_001_[5]),
    .Q(half_out[5])
  );
  DFFPOSX1 \half_out_reg[6]  (
    .CLK(half_clk),
    .D(_001_[6]),
    .Q(half_out[6])
  );
  DFFPOSX1 \half_out_reg[7]  (
    .CLK(half_clk),
    .D(_001_[7]),
    .Q(half_out[7])
  );
  DFFPOSX1 \io_cnt_reg[0]  (
    .CLK(io_clk),
    .D(_161_[0]),
    .Q(io_cnt[0])
  );
  DFFPOSX1 \io_cnt_reg[1]  (
    .CLK(io_clk),
    .D(_162_[1]),
    .Q(io_cnt[1])
  );
  DFFPOSX1 \io_cnt_reg[2]  (
    .CLK(io_clk),
    .D(_162_[2]),
    .Q(io_cnt[2])
  );
  DFFPOSX1 \io_cnt_reg[3]  (
    .CLK(io_clk),
    .D(_162_[3]),
    .Q(io_cnt[3])
  );
  DFFPOSX1 \io_cnt_reg[4]  (
    .CLK(io_clk),
    .D(_162_[4]),
    .Q(io_cnt[4])
  );
  DFFPOSX1 \io_cnt_reg[5]  (
    .CLK(io_clk),
    .D(_162_[5]),
    .Q(io_cnt[5])
  );
  DFFPOSX1 \io_cnt_reg[6]  (
    .CLK(io_clk),
    .D(_162_[6]),
    .Q(io_cnt[6])
  );
  DFFPOSX1 \io_cnt_reg[7]  (
    .CLK(io_clk),
    .D(_162_[7]),
    .Q(io_cnt[7])
  );
  DFFPOSX1 \io_data_reg[0]  (
    .CLK(io_clk),
    .D(_163_[0]),
    .Q(io_data[0])
  );
  DFFPOSX1 \io_data_reg[1]  (
    .CLK(io_clk),
    .D(_164_[1]),
    .Q(io_data[1])
  );
  DFFPOSX1 \io_data_reg[2]  (
    .CLK(io_clk),
    .D(_164_[2]),
    .Q(io_data[2])
  );
  DFFPOSX1 \io_data_reg[3]  (
    .CLK(io_clk),
    .D(_164_[3]),
    .Q(io_data[3])
  );
  DFFPOSX1 \io_data_reg[4]  (
    .CLK(io_clk),
    .D(_164_[4]),
    .Q(io_data[4])
  );
  DFFPOSX1 \io_data_reg[5]  (
    .CLK(io_clk),
    .D(_164_[5]),
    .Q(io_data[5])
  );
  DFFPOSX1 \io_data_reg[6]  (
    .CLK(io_clk),
    .D(_164_[6]),
    .Q(io_data[6])
  );
  DFFPOSX1 \io_data_reg[7]  (
    .CLK(io_clk),
    .D(_164_[7]),
    .Q(io_data[7])
  );
  DFFPOSX1 \io_out_reg[0]  (
    .CLK(io_clk),
    .D(_167_[0]),
    .Q(io_out[0])
  );
  DFFPOSX1 \io_out_reg[1]  (
    .CLK(io_clk),
    .D(_168_[1]),
    .Q(io_out[1])
  );
  DFFPOSX1 \io_out_reg[2]  (
    .CLK(io_clk),
    .D(_168_[2]),
    .Q(io_out[2])
  );
  DFFPOSX1 \io_out_reg[3]  (
    .CLK(io_clk),
    .D(_168_[3]),
    .Q(io_out[3])
  );
  DFFPOSX1 \io_out_reg[4]  (
    .CLK(io_clk),
    .D(_168_[4]),
    .Q(io_out[4])
  );
  DFFPOSX1 \io_out_reg[5]  (
    .CLK(io_clk),
    .D(_168_[5]),
    .Q(io_out[5])
  );
  DFFPOSX1 \io_out_reg[6]  (
    .CLK(io_clk),
    .D(_168_[6]),
    .Q(io_out[6])
  );
  DFFPOSX1 \io_out_reg[7]  (
    .CLK(io_clk),
    .D(_168_[7]),
    .Q(io_out[7])
  );
  DFFPOSX1 io_toggle_reg (
    .CLK(io_clk),
    .D(_002_),
    .Q(io_toggle)
  );
  DFFPOSX1 sync_io_d_reg (
    .CLK(io_clk),
    .D(sync_io_q),
    .Q(sync_io_d)
  );
  DFFPOSX1 sync_io_meta_reg (
    .CLK(io_clk),
    .D(sys_toggle),
    .Q(sync_io_meta)
  );
  DFFPOSX1 sync_io_q_reg (
    .CLK(io_clk),
    .D(sync_io_meta),
    .Q(sync_io_q)
  );
  DFFPOSX1 sync_sys_d_reg (
    .CLK(sys_clk),
    .D(sync_sys_q),
    .Q(sync_sys_d)
  );
  DFFPOSX1 sync_sys_meta_reg (
    .CLK(sys_clk),
    .D(io_toggle),
    .Q(sync_sys_meta)
  );
  DFFPOSX1 sync_sys_q_reg (
    .CLK(sys_clk),
    .D(sync_sys_meta),
    .Q(sync_sys_q)
  );
  DFFPOSX1 \sys_cnt_reg[0]  (
    .CLK(sys_clk),
    .D(_159_[0]),
    .Q(sys_cnt[0])
  );
  DFFPOSX1 \sys_cnt_reg[1]  (
    .CLK(sys_clk),
    .D(_160_[1]),
    .Q(sys_cnt[1])
  );
  DFFPOSX1 \sys_cnt_reg[2]  (
    .CLK(sys_clk),
    .D(_160_[2]),
    .Q(sys_cnt[2])
  );
  DFFPOSX1 \sys_cnt_reg[3]  (
    .CLK(sys_clk),
    .D(_160_[3]),
    .Q(sys_cnt[3])
  );
  DFFPOSX1 \sys_cnt_reg[4]  (
    .CLK(sys_clk),
    .D(_160_[4]),
    .Q(sys_cnt[4])
  );
  DFFPOSX1 \sys_cnt_reg[5]  (
    .CLK(sys_clk),
    .D(_160_[5]),
    .Q(sys_cnt[5])
  );
  DFFPOSX1 \sys_cnt_reg[6]  (
    .CLK(sys_clk),
    .D(_160_[6]),
    .Q(sys_cnt[6])
  );
  DFFPOSX1 \sys_cnt_reg[7]  (
    .CLK(sys_clk),
    .D(_160_[7]),
    .Q(sys_cnt[7])
  );
  DFFPOSX1 \sys_data_reg[0]  (
    .CLK(sys_clk),
    .D(_003_[0]),
    .Q(sys_data[0])
  );
  DFFPOSX1 \sys_data_reg[1]  (
    .CLK(sys_clk),
    .D(_003_[1]),
    .Q(sys_data[1])
  );
  DFFPOSX1 \sys_data_reg[2]  (
    .CLK(sys_clk),
    .D(_003_[2]),
    .Q(sys_data[2])
  );
  DFFPOSX1 \sys_data_reg[3]  (
    .CLK(sys_clk),
    .D(_003_[3]),
    .Q(sys_data[3])
  );
  DFFPOSX1 \sys_data_reg[4]  (
    .CLK(sys_clk),
    .D(_003_[4]),
    .Q(sys_data[4])
  );
  DFFPOSX1 \sys_data_reg[5]  (
    .CLK(sys_clk),
    .D(_003_[5]),
    .Q(sys_data[5])
  );
  DFFPOSX1 \sys_data_reg[6]  (
    .CLK(sys_clk),
    .D(_003_[6]),
    .Q(sys_data[6])
  );
  DFFPOSX1 \sys_data_reg[7]  (
    .CLK(sys_clk),
    .D(_003_[7]),
    .Q(sys_data[7])
  );
  DFFPOSX1 \sys_out_reg[0]  (
    .CLK(sys_clk),
    .D(_169_[0]),
    .Q(sys_out[0])
  );
  DFFPOSX1 \sys_out_reg[1]  (
    .CLK(sys_clk),
    .D(_169_[1]),
    .Q(sys_out[1])
  );
  DFFPOSX1 \sys_out_reg[2]  (
    .CLK(sys_clk),
    .D(_169_[2]),
    .Q(sys_out[2])
  );
  DFFPOSX1 \sys_out_reg[3]  (
    .CLK(sys_clk),
    .D(_169_[3]),
    .Q(sys_out[3])
  );
  DFFPOSX1 \sys_out_reg[4]  (
    .CLK(sys_clk),
    .D(_169_[4]),
    .Q(sys_out[4])
  );
  DFFPOSX1 \sys_out_reg[5]  (
    .CLK(sys_clk),
    .D(_169_[5]),
    .Q(sys_out[5])
  );
  DFFPOSX1 \sys_out_reg[6]  (
    .CLK(sys_clk),
    .D(_169_[6]),
    .Q(sys_out[6])
  );
  DFFPOSX1 \sys_out_reg[7]  (
    .CLK(sys_clk),
    .D(_169_[7]),
    .Q(sys_out[7])
  );
  DFFPOSX1 sys_toggle_reg (
    .CLK(sys_clk),
    .D(_004_),
    .Q(sys_toggle)
  );
endmodule
