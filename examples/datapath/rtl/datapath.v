// Pipelined multiply-accumulate with a small ALU beside it.
//
// Stage 1 registers the operands, stage 2 registers the 12x12 product and the
// ALU result, stage 3 accumulates the product.  The multiplier stage is the
// long one: its upper product bits are the paths that miss timing at the
// default period, while the accumulator and ALU stages meet comfortably.
module datapath (
  input             clk,
  input      [11:0] a,
  input      [11:0] b,
  input      [1:0]  op,
  input             clr,
  output reg [31:0] acc,
  output reg [11:0] alu_q,
  output reg        zero
);
  reg [11:0] a_r, b_r;
  reg [1:0]  op_r;
  reg        clr_r, clr_p;
  reg [23:0] prod;
  reg [11:0] alu_r;

  always @(posedge clk) begin
    a_r   <= a;
    b_r   <= b;
    op_r  <= op;
    clr_r <= clr;
  end

  always @(posedge clk) begin
    prod  <= a_r * b_r;
    clr_p <= clr_r;
    case (op_r)
      2'd0: alu_r <= a_r + b_r;
      2'd1: alu_r <= a_r - b_r;
      2'd2: alu_r <= a_r & b_r;
      2'd3: alu_r <= a_r ^ b_r;
    endcase
  end

  always @(posedge clk) begin
    if (clr_p)
      acc <= 32'd0;
    else
      acc <= acc + {8'd0, prod};
    alu_q <= alu_r;
    zero  <= (alu_r == 12'd0);
  end
endmodule
