#!/usr/bin/env python3
"""Writes a large synthetic gate-level design on the OSU 0.35 um cells, as a project.

The design is a pipeline of register banks with combinational cones between
them, written straight as a gate-level netlist (synthesising a design of this
size would take minutes).  It is built to look like synthesised logic to a
timing analyser:

- every stage's cone has its own depth, and each register of the next bank
  takes its input from a different level of the cone, so arrival times spread;
- gates mostly read the level just above them, sometimes a level further up
  (reconvergence), and now and then one of sixteen buffered select lines that
  each stage shares among a few dozen gates (high fan-out nets);
- the clock and the asynchronous reset are distributed by buffer trees, and
  about one register in eight is a DFFSR cleared by the reset, which gives
  recovery and removal checks.

Output, in the folder given with --out:
    bench.vpf, bench.vsf, bench.sdc      the project (one revision, "bench")
    netlist/bench.v                       the netlist (top module bench_top)

The same seed and size always give the same files.
"""

import argparse
import os
import random
import sys

# Combinational cells: (name, input pins, output pins, relative weight).
GATES = [
    ("INVX1", ("A",), ("Y",), 10),
    ("INVX2", ("A",), ("Y",), 3),
    ("BUFX2", ("A",), ("Y",), 3),
    ("NAND2X1", ("A", "B"), ("Y",), 16),
    ("NOR2X1", ("A", "B"), ("Y",), 10),
    ("AND2X2", ("A", "B"), ("Y",), 6),
    ("OR2X2", ("A", "B"), ("Y",), 5),
    ("XOR2X1", ("A", "B"), ("Y",), 6),
    ("XNOR2X1", ("A", "B"), ("Y",), 4),
    ("NAND3X1", ("A", "B", "C"), ("Y",), 5),
    ("NOR3X1", ("A", "B", "C"), ("Y",), 3),
    ("AOI21X1", ("A", "B", "C"), ("Y",), 8),
    ("OAI21X1", ("A", "B", "C"), ("Y",), 8),
    ("AOI22X1", ("A", "B", "C", "D"), ("Y",), 4),
    ("OAI22X1", ("A", "B", "C", "D"), ("Y",), 4),
    ("MUX2X1", ("A", "B", "S"), ("Y",), 5),
    ("HAX1", ("A", "B"), ("YC", "YS"), 2),
    ("FAX1", ("A", "B", "C"), ("YC", "YS"), 2),
]

LEAF_FANOUT = 32  # registers per leaf buffer of the clock and reset trees


class Netlist:
    def __init__(self):
        self.lines = []
        self.wires = []
        self.cells = 0
        self.registers = 0
        self._net = 0

    def net(self):
        self._net += 1
        name = "n%d" % self._net
        self.wires.append(name)
        return name

    def cell(self, kind, name, pins):
        conns = ", ".join(".%s(%s)" % (p, n) for p, n in pins)
        self.lines.append("  %s %s (%s);" % (kind, name, conns))
        self.cells += 1


def buffer_tree(nl, root, leaves, prefix, leaf_cell, inner_cell):
    """Drives `leaves` nets from `root` through a two-level buffer tree; returns the leaf nets."""
    mids = max(1, (leaves + 15) // 16)
    mid_nets = []
    for m in range(mids):
        out = nl.net()
        nl.cell(inner_cell, "%s_m%d" % (prefix, m), [("A", root), ("Y", out)])
        mid_nets.append(out)
    leaf_nets = []
    for l in range(leaves):
        out = nl.net()
        nl.cell(leaf_cell, "%s_l%d" % (prefix, l), [("A", mid_nets[l % mids]), ("Y", out)])
        leaf_nets.append(out)
    return leaf_nets


def pick_gate(rng, weights_total):
    r = rng.uniform(0, weights_total)
    for gate in GATES:
        r -= gate[3]
        if r <= 0:
            return gate
    return GATES[-1]


def build(cells_wanted, width, seed):
    rng = random.Random(seed)
    nl = Netlist()
    weights_total = sum(g[3] for g in GATES)

    # Depths of the cones between consecutive banks, chosen until the cell
    # count is reached; each level of a cone is about `width` gates wide.
    depths = []
    estimate = width  # input bank
    while estimate < cells_wanted:
        d = rng.randint(6, 40)
        depths.append(d)
        estimate += width * (d + 1) + 2 * (width // LEAF_FANOUT)
    banks = len(depths) + 1
    total_registers = banks * width

    leaves = (total_registers + LEAF_FANOUT - 1) // LEAF_FANOUT
    clk_leaves = buffer_tree(nl, "clk", leaves, "ckt", "CLKBUF1", "CLKBUF3")
    rst_leaves = buffer_tree(nl, "rst_n", leaves, "rst", "BUFX2", "BUFX4")

    def bank(index, d_nets):
        q_nets = []
        for bit, d in enumerate(d_nets):
            leaf = nl.registers // LEAF_FANOUT
            q = nl.net()
            name = "r%d_%d" % (index, bit)
            if rng.random() < 0.125:
                nl.cell("DFFSR", name, [("CLK", clk_leaves[leaf]), ("D", d), ("Q", q),
                                        ("R", rst_leaves[leaf]), ("S", "1'b1")])
            else:
                nl.cell("DFFPOSX1", name, [("CLK", clk_leaves[leaf]), ("D", d), ("Q", q)])
            nl.registers += 1
            q_nets.append(q)
        return q_nets

    q = bank(0, ["din[%d]" % b for b in range(width)])
    for stage, depth in enumerate(depths, start=1):
        levels = [q]
        # Shared select lines, each buffered and loaded by a few dozen pins.
        selects = []
        for i in range(16):
            out = nl.net()
            nl.cell("BUFX4", "s%d_sel%d" % (stage, i), [("A", rng.choice(q)), ("Y", out)])
            selects.append(out)
        for level in range(1, depth + 1):
            outs = []
            g = 0
            while len(outs) < width:
                kind, ins, outpins, _ = pick_gate(rng, weights_total)
                pins = []
                for pin in ins:
                    if pin == "S" or rng.random() < 0.01:
                        src = rng.choice(selects)
                    elif rng.random() < 0.15 and level > 1:
                        src = rng.choice(levels[rng.randrange(max(0, level - 6), level)])
                    else:
                        src = rng.choice(levels[level - 1])
                    pins.append((pin, src))
                produced = []
                for pin in outpins:
                    out = nl.net()
                    pins.append((pin, out))
                    produced.append(out)
                nl.cell(kind, "s%d_l%d_g%d" % (stage, level, g), pins)
                outs.extend(produced)
                g += 1
            levels.append(outs[:width])
        # Each register of the next bank reads a different depth, mostly deep.
        d_nets = []
        for bit in range(width):
            level = depth - min(depth - 1, int(rng.expovariate(1.0 / max(1.0, depth / 4))))
            d_nets.append(levels[level][bit])
        q = bank(stage, d_nets)
    return nl, width, q


def write_project(out_dir, nl, width, q_last, period):
    os.makedirs(os.path.join(out_dir, "netlist"), exist_ok=True)
    path = os.path.join(out_dir, "netlist", "bench.v")
    with open(path, "w") as f:
        f.write("// Synthetic benchmark design written by bench/sta/make_design.py.\n")
        f.write("module bench_top(clk, rst_n, din, dout);\n")
        f.write("  input clk;\n  input rst_n;\n")
        f.write("  input [%d:0] din;\n  output [%d:0] dout;\n" % (width - 1, width - 1))
        for w in nl.wires:
            f.write("  wire %s;\n" % w)
        for bit, qn in enumerate(q_last):
            nl.cell("BUFX2", "obuf%d" % bit, [("A", qn), ("Y", "dout[%d]" % bit)])
        f.write("\n".join(nl.lines))
        f.write("\nendmodule\n")
    with open(os.path.join(out_dir, "bench.sdc"), "w") as f:
        f.write("create_clock -name clk -period %.2f [get_ports clk]\n" % period)
        f.write("set_input_delay 1.0 -clock clk [get_ports {din[*]}]\n")
        f.write("set_input_delay 1.0 -clock clk [get_ports rst_n]\n")
        f.write("set_output_delay 1.0 -clock clk [get_ports {dout[*]}]\n")
    with open(os.path.join(out_dir, "bench.vpf"), "w") as f:
        f.write("project_name = bench\nrevision = bench\n")
    with open(os.path.join(out_dir, "bench.vsf"), "w") as f:
        f.write("top_module = bench_top\nfamily = OSU\nspeed_grade = 035\n")
        f.write("verilog_file = netlist/bench.v\nsdc_file = bench.sdc\n")
        f.write("clock_requirement = clk clk %.2f\n" % period)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--out", required=True, help="folder to write the project into")
    parser.add_argument("--cells", type=int, default=100000, help="approximate cell count")
    parser.add_argument("--width", type=int, default=320, help="registers per bank")
    parser.add_argument("--period", type=float, default=14.0, help="clock period in ns")
    parser.add_argument("--seed", type=int, default=1)
    args = parser.parse_args()
    if args.cells < 1000 or args.width < 8:
        parser.error("--cells must be at least 1000 and --width at least 8")
    nl, width, q_last = build(args.cells, args.width, args.seed)
    write_project(args.out, nl, width, q_last, args.period)
    print("cells %d registers %d" % (nl.cells, nl.registers))
    return 0


if __name__ == "__main__":
    sys.exit(main())
