"""Codecs and primitives, which Google Benchmark measures."""

import json
import subprocess
from collections import defaultdict
from statistics import median

from table import cost_row, nanoseconds, speed_row

# The C library's function for the same work, and the wanted ratio; the C library uses wider vectors
# than we do, which shows most at 4096 bytes.
EXACT, EXACT_AT_4096, OTHER = 3, 6, 4
PRIMITIVES = {
    "_strlen": ("strlen", EXACT),
    "_strchr": ("strchr", EXACT),
    "_strrchr": ("strrchr", EXACT),
    "_strcmp": ("strcmp", EXACT),
    "_strncmp": ("strncmp", EXACT),
    "_memcmp": ("memcmp", EXACT),
    "_memcpy": ("memcpy", EXACT),
    "_memmove": ("memmove", EXACT),
    "_strstr at the end": ("strstr", EXACT),
    "_strstr absent": ("strstr", EXACT),
    "_memfind": ("memmem", EXACT),
    "_strcasecmp": ("strcasecmp", OTHER),
    "_strncasecmp": ("strncasecmp", OTHER),
    "_stristr": ("strcasestr", OTHER),
    "_strrstr": ("a loop of strstr", OTHER),
}
SIZES = (8, 32, 256, 4096, 1 << 20)
PLACES = ("even", "odd")
SEARCHES = ("_strstr", "_memfind", "_stristr", "_strrstr")
WORST_CASE = 50
# A ratio that is printed as 1.00 is not faster.
FASTER = 1.01


def run(program, rounds, *, select=".", pick=median):
    """Processor time in nanoseconds of each selected benchmark of the program: what `pick` makes
    of its repetitions, which are interleaved."""
    output = subprocess.run(
        [
            program,
            "--benchmark_format=json",
            f"--benchmark_repetitions={rounds}",
            "--benchmark_enable_random_interleaving=true",
            "--benchmark_min_time=0.02",
            f"--benchmark_filter={select}",
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
            name = entry["run_name"].split("/iterations:")[0]
            times[name].append(entry["cpu_time"])
    return {name: pick(values) for name, values in times.items()}


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


def primitive_times(stage, rounds, select="."):
    """The shortest of many repetitions: nothing makes such a function faster than it is, and what
    else the machine does makes it slower."""
    program = stage.tools / "bench-primitives"
    return run(program, rounds, select=select, pick=min)


def primitive_rows(stage, _, rounds):
    times = primitive_times(stage, rounds)

    def row(name, size, reference, wanted):
        pairs = [
            (times[f"{name}/{place}/tovik/{size}"], times[f"{name}/{place}/libc/{size}"])
            for place in PLACES
        ]
        ours, theirs = max(pairs, key=lambda pair: pair[0] / pair[1])
        what = f"{name}, {'1 MiB' if size == 1 << 20 else f'{size} bytes'}"
        wanted = EXACT_AT_4096 if (wanted, size) == (EXACT, 4096) else wanted
        return cost_row(what, reference, ours, theirs, nanoseconds, wanted)

    def worst(name):
        ours, theirs = times[f"worst/{name}/{1 << 20}"], times[f"worst/strlen/{1 << 20}"]
        what = f"{name}, worst case, 1 MiB"
        return cost_row(what, "strlen", ours, theirs, nanoseconds, WORST_CASE)

    ratios = [
        row(name, size, reference, wanted)
        for name, (reference, wanted) in PRIMITIVES.items()
        for size in SIZES
    ]
    return ratios + [worst(name) for name in SEARCHES]
