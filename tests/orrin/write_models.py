"""Writes small ONNX models for the tests into a folder. Usage: /usr/bin/python3 write_models.py FOLDER

All but the broken ones average each colour channel of a picture of 8 by 8.
"""

import pathlib
import sys

import onnx
from onnx import TensorProto, helper

folder = pathlib.Path(sys.argv[1])
folder.mkdir(parents=True, exist_ok=True)

FLOAT = TensorProto.FLOAT


def tensor(name, values, kind=FLOAT):
    dimensions = [] if isinstance(values, (int, float)) else [len(values)]
    return helper.make_tensor(name, kind, dimensions, [values] if not dimensions else values)


def save(name, nodes, inputs, outputs, constants=()):
    graph = helper.make_graph(nodes, "test", inputs, outputs, list(constants))
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 13)], ir_version=7)
    onnx.checker.check_model(model)
    content = model.SerializeToString()
    (folder / name).write_bytes(content)
    return content


def planes(shape=(1, 3, 8, 8), kind=FLOAT):
    return helper.make_tensor_value_info("pixels", kind, shape)


def values(name, shape, kind=FLOAT):
    return helper.make_tensor_value_info(name, kind, shape)


def channel_means(result, source="pixels"):
    return [helper.make_node("GlobalAveragePool", [source], ["pooled"]), helper.make_node("Flatten", ["pooled"], [result])]


good = save("means.onnx", channel_means("scores"), [planes()], [values("scores", [1, 3])])
(folder / "cutoff.onnx").write_bytes(good[: len(good) // 2])
(folder / "empty.onnx").write_bytes(b"")
(folder / "garbage.onnx").write_bytes(b"This is no model.\n" * 100)

save("embedding.onnx", channel_means("embedding"), [planes()], [values("embedding", [1, 3])])
save("open.onnx", channel_means("scores"), [planes(("batch", 3, "height", "width"))], [values("scores", ["batch", "labels"])])
save("large.onnx", channel_means("scores"), [planes((1, 3, 16, 16))], [values("scores", [1, 3])])

save(
    "bytes.onnx",
    [
        helper.make_node("Cast", ["pixels"], ["floats"], to=FLOAT),
        helper.make_node("ReduceMean", ["floats"], ["means"], axes=[1, 2], keepdims=0),
        helper.make_node("Div", ["means", "full"], ["scores"]),
    ],
    [planes((1, 8, 8, 3), TensorProto.UINT8)],
    [values("scores", [1, 3])],
    [tensor("full", 255.0)],
)
save(
    "doubles.onnx",
    [helper.make_node("Cast", ["pixels"], ["floats"], to=FLOAT)] + channel_means("scores", "floats"),
    [planes(kind=TensorProto.DOUBLE)],
    [values("scores", [1, 3])],
)
save(
    "winner.onnx",
    channel_means("means") + [helper.make_node("ArgMax", ["means"], ["scores"], axis=1)],
    [planes()],
    [values("scores", [1, 1], TensorProto.INT64)],
)
# The logarithm of what is below zero is no number; a picture that is bright enough gives numbers.
save(
    "logarithm.onnx",
    channel_means("means") + [helper.make_node("Sub", ["means", "half"], ["moved"]), helper.make_node("Log", ["moved"], ["scores"])],
    [planes()],
    [values("scores", [1, 3])],
    [tensor("half", 0.5)],
)
# The shape depends on the pixels as far as the runtime can tell, so it fails at work and not when it is loaded.
save(
    "misshapen.onnx",
    channel_means("means")
    + [
        helper.make_node("ReduceSum", ["pixels"], ["sum"], keepdims=0),
        helper.make_node("Mul", ["sum", "zero"], ["nothing"]),
        helper.make_node("Cast", ["nothing"], ["whole"], to=TensorProto.INT64),
        helper.make_node("Add", ["whole", "shape"], ["computed"]),
        helper.make_node("Reshape", ["means", "computed"], ["scores"]),
    ],
    [planes()],
    [values("scores", ["batch", "labels"])],
    [tensor("zero", 0.0), tensor("shape", [7, 2], TensorProto.INT64)],
)
save(
    "two-inputs.onnx",
    [helper.make_node("Add", ["pixels", "more"], ["sum"])] + channel_means("scores", "sum"),
    [planes(), helper.make_tensor_value_info("more", FLOAT, (1, 3, 8, 8))],
    [values("scores", [1, 3])],
)
