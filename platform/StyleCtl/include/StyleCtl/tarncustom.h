#ifndef STYLECTL_TARNCUSTOM_H
#define STYLECTL_TARNCUSTOM_H

#include <QFileDialog>
#include <QString>

#include "styleglobal.h"

/// What the styled widgets share: their enumerations, their language, the folder dialog.
///
/// All widgets of the library live in the GUI thread. They bring their own light colours, so they look the
/// same under a dark system palette. The numbers of the enumerators are fixed: callers pass them as values.
namespace TarnCustom {

/// State of a control that a colour is for.
enum CtrlState
{
    StateNormal = 0,   ///< enabled, neither hovered nor pressed; also base of the states that are not set
    StateHover = 1,    ///< the mouse is over it
    StatePressed = 2,  ///< held down
    StateDisabled = 3, ///< cannot be used
};

/// Edges and corners at which a window can be stretched with the mouse.
enum StrechEdge
{
    StrechNone = 0x00,
    StrechLeft = 0x01,
    StrechRight = 0x02,
    StrechTop = 0x04,
    StrechBottom = 0x08,
    StrechTopLeft = 0x10,
    StrechTopRight = 0x20,
    StrechBottomLeft = 0x40,
    StrechBottomRight = 0x80,
    /// The usual choice (0xCB): everything but the top, where the title bar moves the window.
    StrechAllButTop = StrechLeft | StrechRight | StrechBottom | StrechBottomLeft | StrechBottomRight,
    StrechAll = 0xFF,
};
Q_DECLARE_FLAGS(StrechEdges, StrechEdge)
Q_DECLARE_OPERATORS_FOR_FLAGS(StrechEdges)

/// Edges of a control that carry a border.
enum BorderEdge
{
    BorderNone = 0,
    BorderSides = 1,     ///< left and right
    BorderTopBottom = 2, ///< top and bottom
    BorderAll = 3,       ///< the whole frame
};

/// Language of the library.
enum Language
{
    Chinese = 0,
    English = 1,
};

/// Sets the language that language() tells; English at start. It loads no texts: those come from
/// StyleCtl_zh_CN.qm, which the program installs as a translator; widgets that are alive re-apply theirs
/// when Qt reports the change. Callable from any thread.
STYLECTL_EXPORT void setLanguage(Language eLanguage);

/// The language last set. Callable from any thread.
STYLECTL_EXPORT Language language();

/// Asks the user for one existing folder, modally.
///
/// @param dir      folder shown first; of a file, the folder it is in; one that does not exist shows the
///                 current directory
/// @param options  as in QFileDialog; QFileDialog::DontUseNativeDialog forces Qt's own dialog
/// @return absolute path with "/" as separator; empty when the user cancelled
STYLECTL_EXPORT QString getExistingDirectory(QWidget *pParent = nullptr, const QString &caption = QString(),
                                             const QString &dir = QString(),
                                             QFileDialog::Options options = QFileDialog::ShowDirsOnly);

} // namespace TarnCustom

#endif
