"""Prints the role and name of everything that the accessibility bus shows, when a password field
is among it. For the system's own Python, which has the bindings."""
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def walk(node):
    if node:
        yield f"{node.get_role_name()}: {node.get_name()}"
        for i in range(node.get_child_count()):
            yield from walk(node.get_child_at_index(i))


nodes = []
deadline = time.monotonic() + 50
while not any(node.startswith("password") for node in nodes) and time.monotonic() < deadline:
    time.sleep(0.1)
    nodes = [*walk(Atspi.get_desktop(0))]
print("\n".join(nodes))
