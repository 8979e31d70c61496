import QtQuick 2.15
import Skarnvisor 1.0

// The keys of the window. Those that a focused control needs itself wait for it.
Item {
    readonly property bool free: window.keysFree
    Shortcut { sequence: "Space"; enabled: free && viewer.ready; onActivated: viewer.timeline.togglePlaying() }
    Shortcut { sequence: "Left"; enabled: free; onActivated: viewer.timeline.stepFrames(-1) }
    Shortcut { sequence: "Right"; enabled: free; onActivated: viewer.timeline.stepFrames(1) }
    Shortcut { sequence: "Ctrl+Home"; onActivated: viewer.timeline.first() }
    Shortcut { sequence: "Ctrl+End"; onActivated: viewer.timeline.last() }
    Shortcut { sequence: "Home"; enabled: free; onActivated: canvas.reset() }
    Shortcut { sequence: "1"; enabled: free; onActivated: canvas.setView("front") }
    Shortcut { sequence: "2"; enabled: free; onActivated: canvas.setView("back") }
    Shortcut { sequence: "3"; enabled: free; onActivated: canvas.setView("left") }
    Shortcut { sequence: "4"; enabled: free; onActivated: canvas.setView("right") }
    Shortcut { sequence: "5"; enabled: free; onActivated: canvas.setView("top") }
    Shortcut { sequence: "6"; enabled: free; onActivated: canvas.setView("bottom") }
    Shortcut { sequence: "F"; enabled: free; onActivated: canvas.fit() }
    Shortcut { sequence: "P"; enabled: free; onActivated: canvas.orthographic = !canvas.orthographic }
    Shortcut { sequence: "S"; enabled: free; onActivated: window.takeTool(CloudCanvas.Select) }
    Shortcut { sequence: "R"; enabled: free; onActivated: window.takeTool(CloudCanvas.Ruler) }
    Shortcut { sequences: ["+", "="]; enabled: free; onActivated: canvas.zoom(0.88) }
    Shortcut { sequence: "-"; enabled: free; onActivated: canvas.zoom(1 / 0.88) }
    Shortcut { sequence: "Alt+Left"; onActivated: canvas.orbit(-5, 0) }
    Shortcut { sequence: "Alt+Right"; onActivated: canvas.orbit(5, 0) }
    Shortcut { sequence: "Alt+Up"; onActivated: canvas.orbit(0, 5) }
    Shortcut { sequence: "Alt+Down"; onActivated: canvas.orbit(0, -5) }
    Shortcut { sequence: StandardKey.Open; onActivated: window.openFile() }
    Shortcut { sequence: "Ctrl+Shift+O"; onActivated: window.openFolder() }
    Shortcut { sequence: "Ctrl+L"; onActivated: window.openLive() }
    Shortcut { sequence: "Ctrl+W"; onActivated: viewer.close() }
    Shortcut { sequence: "Ctrl+Q"; onActivated: window.close() }
    Shortcut { sequence: "Ctrl+P"; onActivated: window.screenshot() }
    Shortcut { sequence: "F9"; onActivated: window.showDock(!window.dockShown) }
    Shortcut { sequence: "F10"; onActivated: window.showTable(!window.tableShown) }
    Shortcut { sequence: "F11"; onActivated: window.toggleFullScreen() }
    Shortcut { sequences: ["?", "F1"]; enabled: free; onActivated: help.open() }
    // A field takes back what was typed, a menu closes.
    Shortcut { sequence: "Escape"; enabled: !window.typing && !window.inPopup; onActivated: window.stepBack() }
}
