"""Shows a Tovik dialog and gives its answer; the standard library is all it needs.

    import tovik
    try:
        name = tovik.dialog("-url", "index.html", timeout=60)
    except tovik.Cancelled:
        ...
"""
import contextlib
import os
import pathlib
import signal
import subprocess
import tempfile

GRACE = 2  # seconds between asking a dialog to end and ending it


class NoAnswer(Exception):
    """The program could not be started or has failed, or gave no answer."""


class Cancelled(NoAnswer):
    """The page or the user has cancelled."""


class TimedOut(NoAnswer, TimeoutError):
    """No answer came in time; the dialog has been ended."""


def dialog(*arguments, program="tovik", timeout=None):
    """Runs a dialog to its end and returns the page's answer, perhaps a status such as "ERR".

    arguments   options of the program, without "-store"
    program     "tovik", found on PATH, or a path
    timeout     seconds to wait; None waits for ever

    Raises Cancelled, TimedOut or, when there is no answer at all, NoAnswer.
    """
    with tempfile.TemporaryDirectory(prefix="tovik-", dir=_runtime_directory()) as folder:
        answer = pathlib.Path(folder, "answer")
        # A host that knows "--print" waits for a restarted dialog too, and takes it along when it
        # is ended.
        _run([program, "--print", *arguments, "-store", answer], timeout)
        try:
            text = answer.read_bytes().decode(errors="surrogateescape")
        except FileNotFoundError:
            text = ""
    if text == "":
        raise NoAnswer(f"{program} ended without an answer")
    if text == "CKR_CANCEL":
        raise Cancelled("cancelled")
    return text


def _runtime_directory():
    """A directory of this user's own; None for that of temporary files."""
    directory = os.environ.get("XDG_RUNTIME_DIR", "")
    usable = os.path.isabs(directory) and os.access(directory, os.W_OK | os.X_OK)
    return directory if usable else None


def _run(command, timeout):
    """Runs the command in a process group of its own, which does not outlive the call."""
    try:
        process = subprocess.Popen(command, stdout=subprocess.DEVNULL, start_new_session=True)
    except OSError as error:
        raise NoAnswer(str(error)) from error
    try:
        process.wait(timeout)
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
