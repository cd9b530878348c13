module chip (clk, a, b, q);
  input clk, a, b;
  output [1:0] q;
  wire n1, n2, q1;
  NAND2X1 u1 (.A(a), .B(b), .Y(n1));
  DFFPOSX1 r1 (.CLK(clk), .D(n1), .Q(q1));
  INVX1 u2 (.A(q1), .Y(n2));
  DFFPOSX1 r2 (.CLK(clk), .D(n2), .Q(q[0]));
  INVX1 u3 (.A(q1), .Y(q[1]));
endmodule
