#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""ScreenReaderTest.py TOOL SIMULATOR: what a screen reader is told of the window.

Runs the tool on the display and the bus that it is started on, walks it as an assistive technology
does, and prints a line for each expectation.
"""
import subprocess
import sys
import time

try:
    import pyatspi
    from gi.repository import GLib
except ImportError as missing:
    print("SKIP   %s" % missing)
    sys.exit(77)

SECONDS = 60
CONTROLS = {"push button", "text", "combo box", "list", "list item", "table", "table cell",
            "table column header", "table row header", "page tab", "progress bar", "label", "dialog"}
failures = 0


def expect(sentence, holds, seen=""):
    global failures
    print(("PASS   " if holds else "FAIL   ") + sentence)
    if not holds:
        failures += 1
        if seen != "":
            print("       seen: %r" % (seen,))


def pump():
    context = GLib.MainContext.default()
    while context.pending():
        context.iteration(False)
    pyatspi.Registry.pumpQueuedEvents()


def wait_for(what):
    """What `what` gives as soon as it gives something."""
    end = time.monotonic() + SECONDS
    while time.monotonic() < end:
        pump()
        try:
            found = what()
        except (GLib.Error, LookupError):
            found = None
        if found:
            return found
        time.sleep(0.02)
    return None


def children(accessible):
    for index in range(accessible.childCount):
        child = accessible.getChildAtIndex(index)
        if child is not None:
            yield child


def walk(accessible):
    if accessible is None:
        return
    yield accessible
    for child in children(accessible):
        yield from walk(child)


def application():
    desktop = pyatspi.Registry.getDesktop(0)
    desktop.clear_cache()
    return next(children(desktop), None)


def all_of(role):
    return [a for a in walk(application()) if a.getRoleName() == role]


def named(role, name):
    return next((a for a in all_of(role) if a.name == name), None)


def text_of(accessible):
    return accessible.queryText().getText(0, -1)


def press(button):
    actions = button.queryAction()
    for index in range(actions.nActions):
        if actions.getName(index).lower() == "press":
            actions.doAction(index)


def targets(accessible, relation):
    return [r.getTarget(i).name for r in accessible.getRelationSet()
            if r.getRelationType() == relation for i in range(r.getNTargets())]


def check_names():
    nameless = [a.getRoleName() for a in walk(named("dialog", "Z&K VX440 Access Application"))
                if a.getRoleName() in CONTROLS and not a.name]
    expect("every control has a role and a name", nameless == [], nameless)
    buttons = {a.name for a in all_of("push button")}
    for name in ("Connect", "Select Firmware File", "Send FW to Device", "Initiate FW Update",
                 "Change Ip Address & SubnetMask", "Read from File", "Write to File",
                 "Recv from Device", "Send to Device", "Reset to Default Settings",
                 "Read from device", "Find Z&K Devices"):
        expect("a button is called %s" % name, name in buttons, sorted(buttons))
    pages = [a.name for a in all_of("page tab")]
    expect("the pages are called as they read on the screen", pages == [
        "Info", "Update FW", "IP Configuration", "Azimuth Configuration", "Pol/Eval Configuration",
        "Options", "Detect Z&K Device"], pages)
    expect("the tab widget has a name", any(a.name == "Pages" for a in all_of("filler")))


def check_values():
    address = named("text", "Device IP")
    expect("the address field has its value", text_of(address) == "192.168.0.129", text_of(address))
    for field in all_of("text"):
        expect("the field %s is labelled by its label" % field.name,
               field.name in targets(field, pyatspi.RELATION_LABELLED_BY))
    for rotors in all_of("combo box"):
        expect("a rotor list has a name", rotors.name == "Rotor", rotors.name)
        expect("a rotor list is labelled by its label",
               "Rotor" in targets(rotors, pyatspi.RELATION_LABELLED_BY))
        entries = [a.name for a in walk(rotors) if a.getRoleName() == "list item"]
        expect("every entry of a rotor list has a name", "" not in entries, entries)
        expect("the first entry is no rotor", entries[0] == "No rotor", entries)
    cells = [a.name for a in all_of("table cell")]
    expect("the cells of both tables have their values", cells == ["0"] * 18, cells)


def check_connection(told):
    named("text", "Device IP").queryEditableText().setTextContents("127.0.0.2")
    press(named("push button", "Connect"))
    wait_for(lambda: "Eeprom data valid" in told)  # the window has no time for walks meanwhile
    expect("the connect button tells that it is connected",
           named("push button", "Connected") is not None)
    expect("a change of the status line is told",
           "Eeprom data valid" in told, told)
    part = named("text", "Part number")
    expect("a field of the unit has its value", text_of(part) != "", text_of(part))


def main(tool, simulator):
    unit = subprocess.Popen([simulator, "--address", "127.0.0.2"], stdout=subprocess.PIPE, text=True)
    unit.stdout.readline()
    told = []

    def note(event):
        if event.source is not None and event.source.getRoleName() == "alert":
            told.append(event.source.name)

    pyatspi.Registry.registerEventListener(note, "object:property-change:accessible-name")
    window = subprocess.Popen([tool])
    try:
        if not wait_for(lambda: named("dialog", "Z&K VX440 Access Application")):
            expect("the window is there", False)
            return
        check_names()
        check_values()
        check_connection(told)
    finally:
        window.terminate()
        unit.terminate()
        window.wait()
        unit.wait()


main(*sys.argv[1:])
sys.exit(1 if failures else 0)
