"""The network: fixed measurements of colour, texture and light on a grid of 8 by 8 cells, and a small trained head on them.

What painted and real pictures have in common is layout: where the colours, the fine and the coarse texture and the points of light
are. So the first part is not trained, and the second sees nothing else. Both exist here twice: for training, and as an ONNX graph.
"""

import numpy as np
import torch
import torch.nn.functional as F
from onnx import TensorProto, checker, helper, numpy_helper
from torch import nn

SIDE = 96
GRID = 8
CELL = SIDE // GRID

# Lightness, red against green, yellow against blue; rows are weights of red, green, blue.
MIX = np.array([[0.3, 0.55, 0.15], [0.8, -0.8, 0.0], [0.5, 0.5, -1.0]], dtype=np.float32)
EDGES = np.array(
    [
        [[0, 0, 0], [-1, 0, 1], [0, 0, 0]],
        [[0, -1, 0], [0, 0, 0], [0, 1, 0]],
        [[-1, 0, 0], [0, 0, 0], [0, 0, 1]],
        [[0, 0, -1], [0, 0, 0], [1, 0, 0]],
        [[-0.25, -0.25, -0.25], [-0.25, 2, -0.25], [-0.25, -0.25, -0.25]],
    ],
    dtype=np.float32,
)
SPOT = 0.08
TINY = 1e-4
MEASURES = 23


def measure(pixels):
    """Pictures [n, 3, 96, 96] from 0 to 1 to measurements [n, 23, 8, 8]."""
    mixed = F.conv2d(pixels, torch.from_numpy(MIX)[:, :, None, None])
    light, color = mixed[:, :1], mixed[:, 1:]
    mean = F.avg_pool2d(mixed, CELL)
    spread = torch.sqrt(F.relu(F.avg_pool2d(mixed * mixed, CELL) - mean * mean) + TINY)
    brightest, darkest = F.max_pool2d(light, CELL), -F.max_pool2d(-light, CELL)
    strongest = torch.sqrt(F.max_pool2d((color * color).sum(dim=1, keepdim=True), CELL) + TINY)
    edges = torch.from_numpy(EDGES)[:, None]
    fine = F.conv2d(F.pad(light, (1, 1, 1, 1), mode="replicate"), edges).abs()
    half = F.avg_pool2d(mixed, 2)
    coarse = F.conv2d(F.pad(half[:, :1], (1, 1, 1, 1), mode="replicate"), edges).abs()
    tint = F.conv2d(F.pad(half[:, 1:], (1, 1, 1, 1), mode="replicate"), torch.cat([edges[4:], edges[4:]]), groups=2).abs()
    around = F.avg_pool2d(F.pad(light, (2, 2, 2, 2), mode="replicate"), 5, stride=1)
    spots = torch.cat([F.relu(light - around - SPOT), F.relu(around - light - SPOT)], dim=1)
    energies = torch.cat(
        [F.avg_pool2d(fine, CELL), F.avg_pool2d(coarse, CELL // 2), F.avg_pool2d(tint, CELL // 2), F.avg_pool2d(spots, CELL)], dim=1
    )
    return torch.cat([mean, spread, brightest, darkest, strongest, torch.sqrt(energies + TINY)], dim=1)


class Head(nn.Module):
    """Measurements to scores. Rows keep their place, columns do not: a beach to the left is one to the right."""

    def __init__(self, labels, width=32, hidden=64):
        super().__init__()
        self.register_buffer("center", torch.zeros(MEASURES, 1, 1))
        self.register_buffer("scale", torch.ones(MEASURES, 1, 1))
        self.first = nn.Conv2d(MEASURES, width, 3, padding=1)
        self.second = nn.Conv2d(width, width, 3, padding=1, stride=(1, 2))
        self.third = nn.Linear(2 * width * GRID, hidden)
        self.last = nn.Linear(hidden, labels)
        self.noise = 0.0
        self.dropout = nn.Dropout(0.4)

    def fit_scale(self, measurements):
        self.center.copy_(measurements.mean(dim=(0, 2, 3))[:, None, None])
        self.scale.copy_(1 / measurements.std(dim=(0, 2, 3))[:, None, None])

    def forward(self, measurements):
        x = (measurements - self.center) * self.scale
        if self.training and self.noise > 0:
            # What differs between paint and reality is the level of each measurement rather than its layout.
            x = x * (1 + self.noise * torch.randn(len(x), MEASURES, 1, 1)) + 1.5 * self.noise * torch.randn(len(x), MEASURES, 1, 1)
            x = x + self.noise * torch.randn_like(x)
            x = x * (torch.rand(len(x), MEASURES, 1, 1) > 0.08)
        x = F.relu(self.first(x))
        x = F.relu(self.second(x))
        x = torch.cat([x.mean(dim=3), x.max(dim=3).values], dim=1).flatten(1)
        return self.last(self.dropout(F.relu(self.third(self.dropout(x)))))


def save(path, heads, producer):
    """Writes the whole network; the scores are the mean of the heads'."""
    nodes, constants = [], []

    def constant(name, value):
        constants.append(numpy_helper.from_array(np.ascontiguousarray(value), name))
        return name

    def node(operator, inputs, output, **attributes):
        nodes.append(helper.make_node(operator, inputs, [output], name=output, **attributes))
        return output

    def pool(operator, source, output, side, stride=None):
        return node(operator, [source], output, kernel_shape=[side, side], strides=[stride or side] * 2)

    def padded(source, by):
        pads = constant(f"pads_{source}_{by}", np.array([0, 0, by, by, 0, 0, by, by], dtype=np.int64))
        return node("Pad", [source, pads], f"{source}_padded_{by}", mode="edge")

    def rooted(source, output):
        return node("Sqrt", [node("Add", [source, "tiny"], f"{output}_squared")], output)

    constant("tiny", np.float32(TINY))
    mixed = node("Conv", ["pixels", constant("mix", MIX[:, :, None, None])], "mixed", kernel_shape=[1, 1])
    nodes.append(helper.make_node("Split", [mixed, constant("one_two", np.array([1, 2], dtype=np.int64))], ["light", "color"], axis=1))
    mean = pool("AveragePool", mixed, "mean", CELL)
    squares = pool("AveragePool", node("Mul", [mixed, mixed], "mixed_squared"), "squares", CELL)
    variance = node("Sub", [squares, node("Mul", [mean, mean], "mean_squared")], "variance")
    spread = rooted(node("Relu", [variance], "variance_positive"), "spread")
    brightest = pool("MaxPool", "light", "brightest", CELL)
    darkest = node("Neg", [pool("MaxPool", node("Neg", ["light"], "dark"), "darkest_negative", CELL)], "darkest")
    axis = constant("channel_axis", np.array([1], dtype=np.int64))
    strength = node("ReduceSum", [node("Mul", ["color", "color"], "color_squared"), axis], "strength", keepdims=1)
    strongest = rooted(pool("MaxPool", strength, "strongest_square", CELL), "strongest")

    edges = constant("edges", EDGES[:, None])
    fine = node("Abs", [node("Conv", [padded("light", 1), edges], "fine_signed", kernel_shape=[3, 3])], "fine")
    half = pool("AveragePool", mixed, "half", 2)
    nodes.append(helper.make_node("Split", [half, "one_two"], ["half_light", "half_color"], axis=1))
    coarse = node("Abs", [node("Conv", [padded("half_light", 1), edges], "coarse_signed", kernel_shape=[3, 3])], "coarse")
    tint_edges = constant("tint_edges", np.concatenate([EDGES[4:], EDGES[4:]])[:, None])
    tint = node("Abs", [node("Conv", [padded("half_color", 1), tint_edges], "tint_signed", kernel_shape=[3, 3], group=2)], "tint")
    around = pool("AveragePool", padded("light", 2), "around", 5, 1)
    constant("spot", np.float32(SPOT))
    difference = node("Sub", ["light", around], "difference")
    bright = node("Relu", [node("Sub", [difference, "spot"], "bright_signed")], "bright_spots")
    dark = node("Relu", [node("Sub", [node("Neg", [difference], "difference_negative"), "spot"], "dark_signed")], "dark_spots")
    spots = node("Concat", [bright, dark], "spots", axis=1)
    energies = node(
        "Concat",
        [
            pool("AveragePool", fine, "fine_energy", CELL),
            pool("AveragePool", coarse, "coarse_energy", CELL // 2),
            pool("AveragePool", tint, "tint_energy", CELL // 2),
            pool("AveragePool", spots, "spot_energy", CELL),
        ],
        "energies",
        axis=1,
    )
    measurements = node("Concat", [mean, spread, brightest, darkest, strongest, rooted(energies, "energy_roots")], "measurements", axis=1)

    results = []
    for i, head in enumerate(heads):
        weights = {f"head{i}_{name}": value.detach().numpy() for name, value in head.state_dict().items()}
        for name, value in weights.items():
            constant(name, value)
        h = f"head{i}_"
        x = node("Mul", [node("Sub", [measurements, h + "center"], h + "centered"), h + "scale"], h + "scaled")
        for part, strides in (("first", [1, 1]), ("second", [1, 2])):
            inputs = [x, f"{h}{part}.weight", f"{h}{part}.bias"]
            total = node("Conv", inputs, f"{h}{part}_sum", kernel_shape=[3, 3], pads=[1, 1, 1, 1], strides=strides)
            x = node("Relu", [total], f"{h}{part}_out")
        columns = [node(operator, [x], f"{h}{operator}", axes=[3], keepdims=0) for operator in ("ReduceMean", "ReduceMax")]
        x = node("Flatten", [node("Concat", columns, h + "columns", axis=1)], h + "flat", axis=1)
        x = node("Gemm", [x, h + "third.weight", h + "third.bias"], h + "third_sum", transB=1)
        x = node("Gemm", [node("Relu", [x], h + "third_out"), h + "last.weight", h + "last.bias"], h + "scores", transB=1)
        results.append(x)
    constant("share", np.float32(1 / len(results)))
    node("Mul", [node("Sum", results, "scores_sum"), "share"], "scores")

    graph = helper.make_graph(
        nodes,
        "scenes",
        [helper.make_tensor_value_info("pixels", TensorProto.FLOAT, [1, 3, SIDE, SIDE])],
        [helper.make_tensor_value_info("scores", TensorProto.FLOAT, [1, heads[0].last.out_features])],
        constants,
    )
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)], ir_version=7, producer_name=producer)
    checker.check_model(model)
    path.write_bytes(model.SerializeToString())
