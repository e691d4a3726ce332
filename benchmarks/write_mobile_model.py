"""Writes a model of the size that phones run, with random weights: inverted residual blocks for 224 by 224, about 300 million
multiplications and 3.5 million weights. Usage: /usr/bin/python3 write_mobile_model.py FOLDER
"""

import json
import pathlib
import sys

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

folder = pathlib.Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)
random = np.random.default_rng(1)
nodes, weights = [], []


def constant(name, values):
    weights.append(numpy_helper.from_array(values.astype(np.float32), name))
    return name


def convolution(source, channels_in, channels_out, kernel, stride=1, groups=1, clip=True):
    name = f"conv{len(nodes)}"
    deviation = (2.0 / (channels_in // groups * kernel * kernel)) ** 0.5
    weight = constant(name + "_w", random.normal(0, deviation, (channels_out, channels_in // groups, kernel, kernel)))
    bias = constant(name + "_b", random.normal(0, 0.01, channels_out))
    nodes.append(
        helper.make_node(
            "Conv", [source, weight, bias], [name], kernel_shape=[kernel, kernel], strides=[stride, stride], group=groups,
            pads=[kernel // 2] * 4,
        )
    )
    if not clip:
        return name
    nodes.append(helper.make_node("Clip", [name, "zero", "six"], [name + "_c"]))
    return name + "_c"


constant("zero", np.array(0.0))
constant("six", np.array(6.0))
value, channels = convolution("pixels", 3, 32, 3, stride=2), 32
for expansion, out, repeats, stride in ((1, 16, 1, 1), (6, 24, 2, 2), (6, 32, 3, 2), (6, 64, 4, 2), (6, 96, 3, 1), (6, 160, 3, 2), (6, 320, 1, 1)):
    for repeat in range(repeats):
        step = stride if repeat == 0 else 1
        wide = convolution(value, channels, channels * expansion, 1) if expansion > 1 else value
        wide = convolution(wide, channels * expansion, channels * expansion, 3, stride=step, groups=channels * expansion)
        narrow = convolution(wide, channels * expansion, out, 1, clip=False)
        if step == 1 and channels == out:
            nodes.append(helper.make_node("Add", [value, narrow], [narrow + "_r"]))
            narrow += "_r"
        value, channels = narrow, out
value = convolution(value, channels, 1280, 1)
labels = [f"scene {i}" for i in range(365)]
nodes.append(helper.make_node("GlobalAveragePool", [value], ["pooled"]))
nodes.append(helper.make_node("Flatten", ["pooled"], ["flat"]))
constant("head", random.normal(0, 0.03, (1280, len(labels))))
constant("head_b", np.zeros(len(labels)))
nodes.append(helper.make_node("Gemm", ["flat", "head", "head_b"], ["scores"]))

graph = helper.make_graph(
    nodes,
    "mobile",
    [helper.make_tensor_value_info("pixels", TensorProto.FLOAT, [1, 3, 224, 224])],
    [helper.make_tensor_value_info("scores", TensorProto.FLOAT, [1, len(labels)])],
    weights,
)
model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)], ir_version=7)
onnx.checker.check_model(model)
(folder / "mobile.onnx").write_bytes(model.SerializeToString())
(folder / "model.json").write_text(
    json.dumps(
        {
            "file": "mobile.onnx",
            "input": {
                "name": "pixels", "width": 224, "height": 224,
                "mean": [0.485, 0.456, 0.406], "deviation": [0.229, 0.224, 0.225],
            },
            "outputs": {"scores": "scores"},
            "labels": labels,
            "occasions": {labels[0]: "beach", labels[1]: "snow"},
        }
    )
)
