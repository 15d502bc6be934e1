"""Runs the benchmarks, prints their table and, after a complete run, writes it to the document."""

import argparse
import shutil
import tempfile
from pathlib import Path

import calls
import dialogs
import growth
import memory
import micro
import startup
import table
import timeline
from display import Display
from stage import Stage

SOURCE = Path(__file__).resolve().parents[2]

# Each accepts the stage, the display and the number of rounds, and returns rows of the table.
SECTIONS = {
    "startup": startup.rows,
    "timeline": timeline.rows,
    "memory": memory.rows,
    "calls": calls.rows,
    "codecs": micro.codec_rows,
    "primitives": micro.primitive_rows,
    "growth": growth.rows,
    "dialogs": dialogs.rows,
}


def parse_arguments():
    parser = argparse.ArgumentParser(
        prog="bench.sh", description="Measures the build against its references."
    )
    parser.add_argument("build", type=Path, help=argparse.SUPPRESS)
    parser.add_argument(
        "sections", nargs="*", metavar="SECTION", help=f"one of {', '.join(SECTIONS)} (default all)"
    )
    parser.add_argument(
        "--rounds",
        type=int,
        default=25,
        help="rounds of the start-up (default %(default)s); memory, growth and dialogs run a fifth",
    )
    arguments = parser.parse_intermixed_args()
    unknown = [name for name in arguments.sections if name not in SECTIONS]
    if unknown:
        parser.error(f"no section {', '.join(unknown)}")
    if arguments.rounds < 1:
        parser.error("--rounds must be at least 1")
    return arguments


def main():
    arguments = parse_arguments()
    sections = arguments.sections or list(SECTIONS)
    results = {}
    with tempfile.TemporaryDirectory(prefix="tovik-bench-") as directory:
        stage = Stage(Path(directory), arguments.build.resolve(), SOURCE / "bench" / "pages")
        with Display(stage) as display:
            for name in sections:
                print(f"Measuring: {name}", flush=True)
                results[name] = SECTIONS[name](stage, display, arguments.rounds)
    rows = [row for name in sections for row in results[name]]
    machine = table.machine_line(arguments.rounds)
    if rows:
        print(f"\n{machine}\n\n{table.render(rows)}")
    if set(sections) == set(SECTIONS):
        shutil.copytree(stage.plots, SOURCE / "docs" / "performance", dirs_exist_ok=True)
        table.write_document(SOURCE / "docs" / "performance.md", machine, rows)


if __name__ == "__main__":
    main()
