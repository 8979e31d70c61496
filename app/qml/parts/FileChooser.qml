import QtQuick 2.15
import QtQuick.Dialogs 1.3

// One file dialog for all panels: ask(title, filters, save, then) calls then(url) with what the user chose. What is saved
// is offered under the name of the source, or under `name`, and never takes the place of the source.
FileDialog {
    id: dialog
    property var then
    property string suffix
    // Where the next dialog begins; empty: where the last one ended.
    property url start: recent
    readonly property url recent: prefs.recentFolder
    onRecentChanged: start = recent
    // Without a suffix and what no name of a file may hold.
    function sourceName() { return viewer.source.replace(/\.\w+$/, "").replace(/[\/\\:*?"<>|]+/g, "_") || "Skarnvisor" }
    function begin(name, then) {
        dialog.then = then
        dialog.open()
        // Only now there is a dialog that takes it.
        if (start != "") folder = start
        start = ""
        files.suggestName(name)
    }
    function ask(title, filters, save, then, name) {
        dialog.title = title
        dialog.nameFilters = filters
        dialog.selectFolder = false
        dialog.selectExisting = !save
        var suffix = save && filters.length > 0 ? /\*\.(\w+)/.exec(filters[0]) : null
        dialog.suffix = suffix ? suffix[1] : ""
        // The dialog asks before it overwrites: it must know the whole name.
        dialog.defaultSuffix = dialog.suffix
        begin(save ? (name || sourceName()) + "." + dialog.suffix : "", then)
    }
    function askFolder(title, then) {
        dialog.title = title
        dialog.nameFilters = []
        dialog.selectExisting = true
        dialog.selectFolder = true
        dialog.suffix = dialog.defaultSuffix = ""
        begin("", then)
    }
    onAccepted: {
        var url = fileUrl.toString()
        if (suffix.length > 0 && !/\.\w+$/.test(url)) url += "." + suffix
        if (!selectExisting && viewer.isOpenSource(url)) return viewer.fail(files.path(url) + " is open: save under another name.")
        then(url)
    }
}
