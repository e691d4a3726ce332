"""Measures the written model in the runtime that the programs use. Usage:

    /usr/bin/python3 evaluate.py [--model FOLDER] [--runtime LIBRARY] [PICTURES CSV]...

First on pictures by the painters of heldout.py (another seed than the calibration's), then on each folder of photographs with its list: a
CSV with the columns `file` (the end of the path) and `scenes` (what a person sees; "a|b" where either is right, and the first counts).
Without folders only the first part runs.
"""

import argparse
import csv
import ctypes
import json
import os
import pathlib

import numpy as np
from PIL import Image, ImageOps

HERE = pathlib.Path(__file__).resolve().parent
SEED = 31415
OF_SCENE = 60
OF_OTHERS = 900
NONE = "something else"
# As in NyOrrinCurator.cpp: an album's mean (over four photos more than it has) from which on vision alone names an occasion.
ALBUM_LIMIT = 0.27
PRIOR_PHOTOS = 4


class Runtime:
    """A session of ONNX Runtime through its table of C functions (interface version 11)."""

    def __init__(self, library, model):
        class Base(ctypes.Structure):
            _fields_ = [("get", ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_uint32)), ("version", ctypes.c_void_p)]

        loaded = ctypes.CDLL(str(library))
        loaded.OrtGetApiBase.restype = ctypes.POINTER(Base)
        self.table = ctypes.cast(loaded.OrtGetApiBase().contents.get(11), ctypes.POINTER(ctypes.c_void_p))
        environment, options, self.session, self.memory = (ctypes.c_void_p() for _ in range(4))
        self.call(3, 3, b"evaluate", ctypes.byref(environment))
        self.call(10, ctypes.byref(options))
        self.call(24, options, 1)
        self.call(7, environment, str(model).encode(), options, ctypes.byref(self.session))
        self.call(69, 1, 0, ctypes.byref(self.memory))

    def call(self, index, *arguments):
        function = ctypes.CFUNCTYPE(ctypes.c_void_p, *[type(a) if isinstance(a, ctypes.c_void_p) else self.kind(a) for a in arguments])
        status = function(self.table[index])(*arguments)
        if status:
            message = ctypes.CFUNCTYPE(ctypes.c_char_p, ctypes.c_void_p)(self.table[2])
            raise RuntimeError(message(status).decode())

    @staticmethod
    def kind(argument):
        return {bytes: ctypes.c_char_p, int: ctypes.c_int64}.get(type(argument), ctypes.c_void_p)

    def scores(self, pixels, count):
        pixels = np.ascontiguousarray(pixels, dtype=np.float32)
        shape = (ctypes.c_int64 * pixels.ndim)(*pixels.shape)
        tensor, result, data = ctypes.c_void_p(), ctypes.c_void_p(), ctypes.c_void_p()
        self.call(49, self.memory, ctypes.c_void_p(pixels.ctypes.data), pixels.nbytes, shape, pixels.ndim, 1, ctypes.byref(tensor))
        inputs, outputs = (ctypes.c_char_p * 1)(b"pixels"), (ctypes.c_char_p * 1)(b"scores")
        tensors, results = (ctypes.c_void_p * 1)(tensor.value), (ctypes.c_void_p * 1)()
        self.call(9, self.session, ctypes.c_void_p(), inputs, tensors, 1, outputs, 1, results)
        result = ctypes.c_void_p(results[0])
        self.call(51, result, ctypes.byref(data))
        values = np.array(ctypes.cast(data, ctypes.POINTER(ctypes.c_float))[:count])
        for value in (tensor, result):
            ctypes.CFUNCTYPE(None, ctypes.c_void_p)(self.table[96])(value)
        return values


class Model:
    def __init__(self, folder, library):
        self.config = json.loads((folder / "model.json").read_text())
        self.labels = self.config["labels"]
        self.runtime = Runtime(library, folder / self.config["file"])

    def probabilities(self, image):
        side = (self.config["input"]["width"], self.config["input"]["height"])
        pixels = np.asarray(image.convert("RGB").resize(side, Image.BILINEAR), dtype=np.float32) / 255
        scores = self.runtime.scores(pixels.transpose(2, 0, 1)[None], len(self.labels)) / self.config["temperature"]
        powers = np.exp(scores - scores.max())
        return powers / powers.sum()

    def occasions(self, probabilities):
        result = {}
        for label, targets in self.config["occasions"].items():
            for keyword, weight in targets.items():
                result[keyword] = result.get(keyword, 0.0) + weight * probabilities[self.labels.index(label)]
        return result


def photographs(folder, list_file):
    """The pictures of a list that are in the folder, upright and as small as the service looks at them."""
    paths = sorted(path for path in folder.rglob("*") if path.is_file())
    with open(list_file, newline="") as rows:
        for row in csv.DictReader(rows):
            found = [path for path in paths if ("/" + str(path)).endswith("/" + row["file"])]
            if not found:
                print(f"  missing: {row['file']}")
                continue
            image = Image.open(found[0])
            image.draft("RGB", (448, 448))
            image = ImageOps.exif_transpose(image).convert("RGB")
            image.thumbnail((224, 224), Image.BILINEAR)
            yield row["file"], image, row["scenes"].split("|")


def report(model, samples, names=False):
    """`samples`: name, probabilities, the labels that are right (the first counts)."""
    samples = list(samples)
    chosen = [model.labels[int(np.argmax(p))] for _, p, _ in samples]
    right = sum(label in truth for label, (_, _, truth) in zip(chosen, samples))
    print(f"  {len(samples)} pictures, {right / len(samples):.1%} right")
    print(f"  {'scene':22} {'count':>5} {'precision':>9} {'recall':>7}")
    for label in model.labels:
        of_label = [i for i, (_, _, truth) in enumerate(samples) if truth[0] == label]
        called = [i for i, name in enumerate(chosen) if name == label]
        if not of_label and not called:
            continue
        precision = f"{sum(label in samples[i][2] for i in called) / len(called):.0%}" if called else "-"
        recall = f"{sum(chosen[i] in samples[i][2] for i in of_label) / len(of_label):.0%}" if of_label else "-"
        print(f"  {label:22} {len(of_label):5} {precision:>9} {recall:>7}")
    nothing = [p for _, p, truth in samples if truth[0] == NONE]
    if nothing:
        scene = sum(np.argmax(p) != model.labels.index(NONE) for p in nothing)
        occasions = [model.occasions(p) for p in nothing]
        sure = sum(max(o.values()) >= 0.5 for o in occasions)
        print(f"  of {len(nothing)} that show no scene, {scene} are called one and {sure} feed an occasion with 0.5 or more")
        means = {k: float(np.mean([o[k] for o in occasions])) for k in occasions[0]}
        top = sorted(means.items(), key=lambda item: -item[1])[:4]
        print("  their mean for an occasion: " + ", ".join(f"{k} {v:.3f}" for k, v in top) + f" (an album is named from {ALBUM_LIMIT} on)")
        r = np.random.default_rng(1)
        named = 0
        for _ in range(1000):
            album = [occasions[i] for i in r.integers(0, len(occasions), 15)]
            named += max(sum(o[k] for o in album) / (len(album) + PRIOR_PHOTOS) for k in means) >= ALBUM_LIMIT
        print(f"  of 1000 albums of 15 pictures drawn from these, {named} are given an occasion")
    sums = np.array([p.max() for _, p, _ in samples])
    hits = np.array([label in truth for label, (_, _, truth) in zip(chosen, samples)])
    for low, high in ((0.0, 0.5), (0.5, 0.7), (0.7, 0.9), (0.9, 1.01)):
        part = (sums >= low) & (sums < high)
        if part.any():
            print(
                f"  surest label at {low:.1f} to {min(high, 1.0):.1f}: {part.sum()} pictures, said {sums[part].mean():.2f}, right {hits[part].mean():.2f}"
            )
    if names:
        for (name, p, truth), label in zip(samples, chosen):
            if label not in truth:
                print(f"  wrong: {name}: {label} {p.max():.2f} instead of {'|'.join(truth)}")


def main():
    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("--model", type=pathlib.Path, default=HERE.parent.parent / "resources" / "models" / "scenes")
    arguments.add_argument(
        "--runtime", type=pathlib.Path, default=cache / "velmora-build" / "onnxruntime-1.11.0" / "libonnxruntime.so.1.11.0"
    )
    arguments.add_argument("--painted", type=int, default=OF_SCENE, help="pictures of each scene, 0 for none")
    arguments.add_argument("photographs", nargs="*", type=pathlib.Path, metavar="PICTURES CSV")
    options = arguments.parse_args()
    model = Model(options.model, options.runtime)

    if options.painted > 0:
        import heldout

        samples = []
        for number, label in enumerate(model.labels):
            for i in range(options.painted if number else OF_OTHERS):
                image = heldout.paint(np.random.default_rng([SEED, number, i]), label)
                samples.append((f"{label} {i}", model.probabilities(image), [label]))
        print("Painted:")
        report(model, samples)
    together = []
    for folder, list_file in zip(options.photographs[::2], options.photographs[1::2]):
        print(f"Photographs of {list_file.name}:")
        samples = [(name, model.probabilities(image), truth) for name, image, truth in photographs(folder, list_file)]
        if samples:
            report(model, samples, names=True)
        together += samples
    if len(options.photographs) > 2 and together:
        print("All photographs:")
        report(model, together)


if __name__ == "__main__":
    main()
