# SPDX-License-Identifier: MIT
"""What the Mac's side believes of Qt on a Mac, and the lines of Qt's sources that say so.

docs/macos.md lists the same, word for word. Debian has the sources: `apt-get source qt6-base`, and the folder that comes of
it is named by PARKLET_QT_SOURCE.
"""
import os
import pathlib
import re

COCOA = "src/plugins/platforms/cocoa"
BELIEFS = [
    ("A drag of one address goes by AppKit's deprecated call with an image.", f"{COCOA}/qcocoadrag.mm",
     r"(?s)\[theWindow dragImage:dragImage.*qtUrls\.size\(\) <= 1\) \{[^}]*return false;"),
    ("A view of Qt's counts from the top.", f"{COCOA}/qnsview_drawing.mm", r"isFlipped\s*\{\s*return YES;"),
    ("`mouseUp:` of Qt's view makes Qt take the button for released.", f"{COCOA}/qnsview_mouse.mm",
     r"m_buttons &= ~button;\s*\[self handleMouseEvent:theEvent\]"),
    ("Mouse events are handed on later, when the event they came of is the current one no more.",
     "src/gui/kernel/qwindowsysteminterface.cpp", r"synchronousWindowSystemEvents\s*=\s*false"),
    ("A drop that holds a web address yields web addresses only, and no files beside them.",
     "src/gui/platform/darwin/qmacmime.mm", r"new QMacPasteboardMimeFileUri;\s*new QMacPasteboardMimeUrl;"),
    ("Paths that are dropped or pasted are composed (NFC).", "src/gui/platform/darwin/qmacmime.mm",
     r"url\.setPath\(url\.path\(\)\.normalized\(QString::NormalizationForm_C\)\)"),
    ("Qt sets a window's style mask when its flags are set, and leaves the full-size content view in it.",
     f"{COCOA}/qcocoawindow.mm",
     r"(?s)& NSWindowStyleMaskFullSizeContentView\)\s*styleMask \|= NSWindowStyleMaskFullSizeContentView.*"
     r"m_view\.window\.styleMask = windowStyleMask\(flags\)"),
    ("A window with a transient parent cannot be the main one.", f"{COCOA}/qnswindow.mm",
     r"window\(\)->transientParent\(\)\)\s*return NO;"),
    ("Tool windows hide when the application is left, unless an attribute says otherwise.",
     f"{COCOA}/qcocoawindow.mm", r"hidesOnDeactivate = \(\(type & Qt::Tool\) == Qt::Tool\) && !alwaysShowToolWindow"),
    ("Qt's view follows the pointer all the time, and keeps it to itself while the application is not active.",
     f"{COCOA}/qnsview_mouse.mm", r"(?s)NSTrackingActiveAlways.*if \(!NSApp\.active\)\s*return"),
    ("Qt tells the window under the pointer that it has come or gone when the application is activated or left.",
     f"{COCOA}/qcocoaapplicationdelegate.mm",
     r"(?s)applicationDidBecomeActive.*handleEnterEvent\(windowUnderMouse.*applicationDidResignActive.*"
     r"handleLeaveEvent\(windowUnderMouse"),
    ("Qt 6.4 draws into the layer of its view.", f"{COCOA}/qcocoabackingstore.mm",
     r"flushedView\.layer\.contents = backBufferSurface"),
    ("Qt's view takes `copy:`, `selectAll:` and the like from items of Qt's own alone.", f"{COCOA}/qnsview_menus.mm",
     r"(?s)selectorIsCutCopyPaste\(invocation\.selector\).*qt_objc_cast<QCocoaNSMenuItem \*>\(sender\)"),
    ("Qt's menu bar puts an application menu first.", f"{COCOA}/qcocoamenubar.mm", r"ensureAppMenuInMenu:mb->nsMenu\(\)"),
    ("`QT_MAC_SET_RAISE_PROCESS=0` keeps Qt from activating the application when it raises a window.",
     f"{COCOA}/qcocoawindow.mm", r"qt_mac_resolveOption\(true, \"QT_MAC_SET_RAISE_PROCESS\"\)"),
    ("`QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM` keeps Qt from giving the program a place in the Dock.",
     f"{COCOA}/qcocoaintegration.mm", r"qEnvironmentVariableIsEmpty\(\"QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM\"\)"),
    ("An item gets its submenu as the menu around it opens.", f"{COCOA}/qcocoamenu.mm",
     r"submenu->setAttachedItem\(syncedItem\)"),
    ("A loop of Qt's that has been told to end forgets it when a new one begins.", f"{COCOA}/qcocoaeventdispatcher.mm",
     r"QBoolBlocker interruptBlocker\(d->interrupt, false\)"),
]


def source():
    folders = [pathlib.Path(os.environ["PARKLET_QT_SOURCE"])] if os.environ.get("PARKLET_QT_SOURCE") else \
        [*pathlib.Path("/usr/src").glob("qt6-base*"), *pathlib.Path("/usr/src").glob("qtbase*")]
    return next((folder for folder in folders if (folder / COCOA).is_dir()), None)


def faults(root):
    page = re.sub(r"\s+", " ", (root / "docs/macos.md").read_text(encoding="utf-8"))
    for statement, _, _ in BELIEFS:
        if statement not in page:
            yield f"docs/macos.md does not list: {statement}"
    folder = source()
    if not folder:
        print(f"   skipped: Qt's sources are not here (PARKLET_QT_SOURCE); {len(BELIEFS)} beliefs stay beliefs")
        return
    for statement, file, pattern in BELIEFS:
        path = folder / file
        if not path.is_file():
            yield f"{file} is not among Qt's sources: {statement}"
        elif not re.search(pattern, path.read_text(encoding="utf-8")):
            yield f"{file} does not say so: {statement}"
    print(f"   {len(BELIEFS)} beliefs looked up in {folder.name}")
