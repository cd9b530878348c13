module a(x);
 input [7:0] x;
 b u (.y(x));
endmodule
module b(y);
 input [7:0] y;
 (* keep *) INVX1 i (.A(y[0]));
endmodule
