"""The files and commands of a guide, as a reader follows them."""
import re
import subprocess


def read(guide, folder):
    """Saves the files that the guide shows into the folder and returns its blocks of commands."""
    text = guide.read_text()
    for name, body in re.findall(r"ave as `([^`]+)`:\n\n```\w+\n(.*?)```", text, re.S):
        (folder / name).parent.mkdir(exist_ok=True)
        (folder / name).write_text(body)
    return re.findall("```sh\n(.*?)```", text, re.S)


def follow(test, guide, folder):
    """Carries out the commands in order and answers by keyboard each window that they open.
    Returns what they printed."""
    printed = ""
    for block in read(guide, folder):
        test.process = test.spawn(["bash", "-euc", block], env=test.environment, cwd=folder,
                                  text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        output, errors = test.answer_by_keyboard()
        test.assertEqual(test.process.returncode, 0, block + output + errors)
        printed += output
    return printed


def examples(guide, program):
    """The blocks of the guide that run the program: their commands, and the lines that they print
    there, with what differs from run to run left out."""
    for block in re.findall("```console\n(.*?)```", guide.read_text(), re.S):
        if f"$ {program}" in block:
            lines = block.splitlines()
            yield ("\n".join(line[2:] for line in lines if line.startswith("$ ")),
                   [steady(line) for line in lines if not line.startswith("$ ")])


def steady(text):
    """The text without times, process numbers and folders."""
    return re.sub(r'\d+\.\d\d ms|(?<=process )\d+|(?<=")/[^"]*/(?=")', "-", text)
