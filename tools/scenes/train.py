"""Paints, trains, calibrates and writes the model. Usage: /usr/bin/python3 train.py [--quick] [--painted FILE] [FOLDER]

Without a folder: the one in resources/models. --quick paints a tenth; its result is for trying the scripts only. --painted keeps the
measurements of the painted pictures in a file, and takes them from there if it exists: for trying other trainings. The seeds are
fixed.
"""

import argparse
import json
import pathlib
import time

import numpy as np
import torch
import torch.nn.functional as F
from PIL import Image

import heldout
import network
import scenes
from canvas import camera

HERE = pathlib.Path(__file__).resolve().parent
DEFAULT_FOLDER = HERE.parent.parent / "resources" / "models" / "scenes"

SEED = 20240917
PAINTED_OF_SCENE = 300
PAINTED_OF_OTHERS = 4200
SHOTS = 2
CALIBRATION_OF_SCENE = 40
CALIBRATION_OF_OTHERS = 600
HEADS = 1
EPOCHS = 12
NOISE = 0.25

# Which scene tells of which occasion, and how much of its probability counts there; docs/models.md says why.
OCCASIONS = {
    "sandy beach": {"beach": 0.9},
    "open water": {"beach": 0.3},
    "swimming pool": {"vacation": 0.3},
    "snow": {"snow": 0.9},
    "forest": {"hiking": 0.55},
    "mountains": {"hiking": 0.7},
    "city street": {"city": 0.7},
    "city at night": {"city": 0.7},
    "fireworks": {"newyear": 0.7},
    "candles in the dark": {"birthday": 0.4},
    "christmas tree": {"christmas": 0.8},
    "sports pitch": {"sports": 0.7},
}


def pixels(image):
    """The picture as the program scales it: stretched, each pixel the weighted mean of what it covers."""
    small = image.convert("RGB").resize((network.SIDE, network.SIDE), Image.BILINEAR)
    return np.asarray(small, dtype=np.uint8).transpose(2, 0, 1)


def painted(painters, seed, of_scene, of_others, shots):
    """Measurements and label numbers of painted pictures."""
    pictures, labels = [], []
    for number, label in enumerate(scenes.LABELS):
        for i in range(of_scene if number else of_others):
            r = np.random.default_rng([seed, number, i])
            canvas = painters.draw(r, label)
            for _ in range(shots):
                pictures.append(pixels(camera(*canvas)))
                labels.append(number)
    with torch.no_grad():
        parts = [network.measure(torch.from_numpy(np.stack(pictures[i : i + 256])).float() / 255) for i in range(0, len(pictures), 256)]
    return torch.cat(parts), torch.tensor(labels)


def train(head, x, y, epochs, batch=128, noise=NOISE):
    head.fit_scale(x)
    head.noise = noise
    steps = epochs * (len(x) // batch)
    optimizer = torch.optim.AdamW(head.parameters(), lr=2e-3, weight_decay=2e-2)
    schedule = torch.optim.lr_scheduler.OneCycleLR(optimizer, 3e-3, total_steps=steps, pct_start=0.15)
    head.train()
    for _ in range(epochs):
        order = torch.randperm(len(x))
        for i in range(len(x) // batch):
            part = order[i * batch : (i + 1) * batch]
            loss = F.cross_entropy(head(x[part]), y[part], label_smoothing=0.05)
            optimizer.zero_grad()
            loss.backward()
            optimizer.step()
            schedule.step()
    head.eval()


def temperature_of(scores, labels):
    """The temperature at which the probabilities of pictures by other painters are the most honest (least cross entropy)."""
    candidates = np.arange(0.4, 4.0, 0.02)
    losses = [F.cross_entropy(scores / float(t), labels).item() for t in candidates]
    return round(float(candidates[int(np.argmin(losses))]), 2)


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    arguments.add_argument("--quick", action="store_true")
    arguments.add_argument("--painted", type=pathlib.Path)
    arguments.add_argument("folder", nargs="?", type=pathlib.Path, default=DEFAULT_FOLDER)
    options = arguments.parse_args()
    share = 0.1 if options.quick else 1.0
    torch.set_num_threads(1)
    torch.manual_seed(SEED)
    torch.use_deterministic_algorithms(True)

    started = time.process_time()
    if options.painted and options.painted.exists():
        x, y, calibration_x, calibration_y = torch.load(options.painted)
    else:
        x, y = painted(scenes, SEED, int(PAINTED_OF_SCENE * share), int(PAINTED_OF_OTHERS * share), SHOTS)
        calibration_x, calibration_y = painted(heldout, SEED + 1, int(CALIBRATION_OF_SCENE * share), int(CALIBRATION_OF_OTHERS * share), 1)
        if options.painted:
            torch.save((x, y, calibration_x, calibration_y), options.painted)
    print(f"{len(x)} training pictures painted after {time.process_time() - started:.0f} s", flush=True)

    heads = []
    for number in range(HEADS):
        torch.manual_seed(number)
        head = network.Head(len(scenes.LABELS))
        train(head, x, y, EPOCHS)
        heads.append(head)
        with torch.no_grad():
            right = (head(calibration_x).argmax(dim=1) == calibration_y).float().mean().item()
        print(f"head {number}: {right:.3f} of the other painters' pictures right, after {time.process_time() - started:.0f} s", flush=True)

    with torch.no_grad():
        scores = torch.stack([head(calibration_x) for head in heads]).mean(dim=0)
    temperature = temperature_of(scores, calibration_y)
    options.folder.mkdir(parents=True, exist_ok=True)
    network.save(options.folder / "scenes.onnx", heads, "tools/scenes")
    config = {
        "name": "Scenes",
        "description": "Layout of colour, texture and light; trained on painted pictures only",
        "source": "tools/scenes",
        "file": "scenes.onnx",
        "input": {"name": "pixels", "width": network.SIDE, "height": network.SIDE, "fit": "stretch"},
        "outputs": {"scores": "scores"},
        "activation": "softmax",
        "temperature": temperature,
        "labels": scenes.LABELS,
        "occasions": OCCASIONS,
    }
    (options.folder / "model.json").write_text(json.dumps(config, indent=4) + "\n")
    print(f"temperature {temperature}, {(options.folder / 'scenes.onnx').stat().st_size} bytes, {time.process_time() - started:.0f} s")


if __name__ == "__main__":
    main()
