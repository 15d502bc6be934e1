"""Shows a Tovik dialog and gives its answer; the standard library is all it needs.

    import tovik
    try:
        name = tovik.dialog("-url", "index.html", timeout=60)
    except tovik.Cancelled:
        ...
"""
import contextlib
import os
import signal
import subprocess
import urllib.parse

GRACE = 2  # seconds between asking a dialog to end and ending it

# The options of the program: first those with a value, then the flags.
VALUED = frozenset(("-url", "-root", "-store", "-title", "-icon", "-size", "-position",
                    "-useragent", "-wait", "-plugin", "-config", "--parent"))
FLAGS = frozenset(("-fullscreen", "-resizing", "-system", "-verbose",
                   "--print", "--console", "--inspect", "--help", "--version"))


class NoAnswer(Exception):
    """The program could not be started or has failed, or gave no answer."""


class Cancelled(NoAnswer):
    """The page or the user has cancelled."""


class TimedOut(NoAnswer, TimeoutError):
    """No answer came in time; the dialog has been ended."""


class Crashed(NoAnswer):
    """The web process has crashed, often in the plug-in, and the user has closed the window."""


class Refused(NoAnswer, ValueError):
    """An argument means something else to the program, or cannot be passed to it."""


def dialog(*arguments, program="tovik", timeout=None, query=None, parent=None):
    """Runs a dialog to its end and returns the page's answer, perhaps a status such as "ERR".

    arguments   options of the program, without "-store"
    program     "tovik", found on PATH, or a path
    timeout     seconds to wait; None waits for ever
    query       names and values for the start page, a mapping or pairs, encoded here. {} gives the
                page no query. With None the query of the first argument that holds "://" is used
    parent      handle of the window that the dialog belongs to: "x11:0x1c00007", "wayland:TOKEN", or
                the number of an X window, as a text or an int

    The answer comes through a pipe, so that the dialog ends when this process ends, by a signal too.

    Raises Cancelled, TimedOut, Crashed, Refused or, when there is no answer at all, NoAnswer.
    """
    words = [os.fspath(word) for word in arguments]
    if parent is not None:
        words[:0] = ["--parent", str(parent)]
    for name, value in zip(words, words[1:]):
        if name in VALUED and value.partition("=")[0] in VALUED | FLAGS:
            raise Refused(f"the value of {name} is the option {value}")
    try:
        if query is not None:
            encoded = urllib.parse.urlencode(query, quote_via=urllib.parse.quote)
            words.insert(0, "query://" + ("?" + encoded if encoded else ""))
        status, printed = _run([program, "--print", *words], timeout)
    except ValueError as error:  # a null byte or a lone surrogate
        raise Refused(str(error)) from error
    text = printed.decode(errors="surrogateescape").removesuffix("\n")
    if status == 1 and text == "CKR_CANCEL":
        raise Cancelled("cancelled")
    if status == 4:
        raise Crashed(f"the web process of {program} has crashed")
    if status != 0 or text == "":
        raise NoAnswer(f"{program} ended with status {status} and without an answer")
    return text


def _run(command, timeout):
    """Runs the command in a process group of its own, which does not outlive the call; returns
    its exit status and what it has printed."""
    try:
        process = subprocess.Popen(command, stdout=subprocess.PIPE, start_new_session=True)
    except OSError as error:
        raise NoAnswer(str(error)) from error
    with process:
        try:
            printed, _ = process.communicate(timeout=timeout)
            return process.returncode, printed
        except BaseException as error:
            _end(process)
            if isinstance(error, subprocess.TimeoutExpired):
                raise TimedOut(f"no answer in {timeout} seconds") from None
            raise


def _end(process):
    with contextlib.suppress(ProcessLookupError):
        os.killpg(process.pid, signal.SIGTERM)
    try:
        process.wait(GRACE)
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.wait()
