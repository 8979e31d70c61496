import QtQuick 2.15
import QtQuick.Dialogs 1.3

// One file dialog for all panels: ask(title, filters, save, then) calls then(url) with what the user chose.
FileDialog {
    id: dialog
    property var then
    property string suffix
    // Where the next dialog begins; empty: where the last one ended.
    property url start: recent
    readonly property url recent: prefs.recentFolder
    onRecentChanged: start = recent
    function begin(then) {
        dialog.then = then
        dialog.open()
        // Only now there is a dialog that takes it.
        if (start != "") folder = start
        start = ""
    }
    function ask(title, filters, save, then) {
        dialog.title = title
        dialog.nameFilters = filters
        dialog.selectFolder = false
        dialog.selectExisting = !save
        var suffix = save && filters.length > 0 ? /\*\.(\w+)/.exec(filters[0]) : null
        dialog.suffix = suffix ? suffix[1] : ""
        // The dialog asks before it overwrites: it must know the whole name.
        dialog.defaultSuffix = dialog.suffix
        begin(then)
    }
    function askFolder(title, then) {
        dialog.title = title
        dialog.nameFilters = []
        dialog.selectExisting = true
        dialog.selectFolder = true
        dialog.suffix = dialog.defaultSuffix = ""
        begin(then)
    }
    onAccepted: {
        var url = fileUrl.toString()
        if (suffix.length > 0 && !/\.\w+$/.test(url)) url += "." + suffix
        then(url)
    }
}
