"""Codecs and primitives, which Google Benchmark measures."""

import json
import subprocess
from collections import defaultdict
from statistics import median

from table import cost_row, nanoseconds, speed_row

# Wanted at 8, 32, 256 and 4096 bytes and 1 MiB.
PRIMITIVES = {
    "_strlen": (2, 2, 2.5, 6, 3),
    "_strchr": (2, 2, 2.5, 5, 3),
    "_strrchr": (3.5, 2, 3.5, 8, 5),
    "_strcmp equal": (4, 5, 14, 35, 17),
    "_strstr at the end": (1, 1, 2, 2.5, 2.5),
    "_strstr absent": (2, 3, 4, 7, 4.5),
    "_memcpy": (1.5, 1.5, 2, 2.5, 2),
    "_memmove": (1.5, 1.5, 2, 5.5, 3.5),
}
SIZES = (8, 32, 256, 4096, 1 << 20)
# A ratio that is printed as 1.00 is not faster.
FASTER = 1.01


def run(program, rounds):
    """Median processor time in nanoseconds of each benchmark of the program, whose repetitions
    are interleaved."""
    output = subprocess.run(
        [
            program,
            "--benchmark_format=json",
            f"--benchmark_repetitions={rounds}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_min_time=0.02",
        ],
        stdout=subprocess.PIPE,
        stderr=subprocess.DEVNULL,
        check=True,
    ).stdout
    times = defaultdict(list)
    for entry in json.loads(output)["benchmarks"]:
        if entry.get("error_occurred"):
            raise RuntimeError(f"{entry['name']}: {entry['error_message']}")
        if entry["run_type"] == "iteration":
            times[entry["run_name"]].append(entry["cpu_time"])
    return {name: median(values) for name, values in times.items()}


def codec_rows(stage, _, rounds):
    times = run(stage.tools / "bench-codecs", rounds)

    def against(row, name, what, contestant, reference, wanted):
        ours, theirs = times[f"{name}/tovik"], times[f"{name}/{contestant}"]
        return row(f"{name}, 1 MiB{what}", reference, ours, theirs, nanoseconds, wanted)

    faster = ", times faster"
    return [
        against(cost_row, "url_decode", "", "plain", "a plain single pass", 1.5),
        against(speed_row, "url_decode", faster, "glib", "g_uri_unescape_string", FASTER),
        against(speed_row, "base64_decode", faster, "glib", "g_base64_decode_inplace", FASTER),
        against(speed_row, "alloc_argument_list", faster, "glib", "g_shell_parse_argv", 3),
    ]


def primitive_rows(stage, _, rounds):
    times = run(stage.tools / "bench-primitives", rounds)
    return [
        cost_row(
            f"{name}, {'1 MiB' if size == 1 << 20 else f'{size} bytes'}",
            "C library",
            times[f"{name}/tovik/{size}"],
            times[f"{name}/libc/{size}"],
            nanoseconds,
            wanted,
        )
        for name, ratios in PRIMITIVES.items()
        for size, wanted in zip(SIZES, ratios)
    ]
