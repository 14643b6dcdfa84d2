#ifndef TOOLBASE_LUMOINTERFACE_H
#define TOOLBASE_LUMOINTERFACE_H

#include <QFileDialog> // for its options alone, which cannot be declared ahead
#include <QList>
#include <QString>

#include "toolbaseglobal.h"

/// Services that all tools of an installation share.
///
/// All functions are static and callable from any thread, unless said otherwise. The library itself links
/// no widgets, so it serves programs without a window too; the one function that needs them is in a library
/// of its own, Lumo::ToolBaseDialogs.
class TOOLBASE_EXPORT LumoInterface
{
public:
    // ---- Paths -----------------------------------------------------------------------------------

    /// Directory of the read-only configuration, without a trailing separator: rcc/, plugins/, log4qt/
    /// and Translation/ lie below it. It is share/lumo-import-export-features beside the directory of the
    /// running program; the environment variable LUMO_READONLY_CFG_PATH points elsewhere.
    static QString readonlyCfgPath();

    /// Default folder for files of the user: the XDG documents directory when it exists, else the home
    /// directory. Without a trailing separator.
    static QString userDataPath();

    // ---- The installation's settings -----------------------------------------------------------------

    /// Language of the installation: "CH" or "ENG". Read anew on every call, from the user's
    /// settings ($XDG_CONFIG_HOME/lumo/installation.conf, key Language), else from installation.conf in
    /// readonlyCfgPath(); "ENG" when neither names one of the two.
    static QString language();

    /// Number of devices that a tool may serve at a time: key ToolsSupportNum of the same files, 1 or more;
    /// 64 when it is not set or no such number.
    static int toolsSupportNum();

    /// Version of the running program, for its title: QCoreApplication::applicationVersion() with a "V"
    /// before it; empty when the program set none.
    static QString curExeVersion();

    // ---- Logging -------------------------------------------------------------------------------------

    /// Routes Qt's messages (qDebug() to qCritical(), qFatal()) to log4cxx, configured by a log4j property
    /// file. The message's category is the logger's name; source file, line and function go with it.
    /// A file that is missing or cannot be read leaves messages on stderr. Environment variables in the
    /// file ("${XDG_STATE_HOME}") are expanded; LUMO_LOG_DIR is set to a writable directory if unset.
    /// A message that cannot be written, to a full disk for example, goes to stderr instead; why is told
    /// there once.
    /// Call it once, from the main thread.
    static void initLog4qtConfig(const QString &file);

    // ---- Processes -----------------------------------------------------------------------------------

    /// Process ids of the running processes of this name, whoever runs them, the caller included when it has
    /// that name; appended to *ids. A process has the name when the file name of its executable equals it. Of
    /// another user's process the executable is not known; it has the name when the first 15 bytes, which the
    /// system tells, and the path that it was started by do. Nothing is appended when the process list cannot
    /// be read; processes that the system hides (hidepid) are not found.
    static void processID(const QString &name, QList<long long> *ids);

    /// Ends the other processes of this name that belong to the calling user, never the caller: asks
    /// (SIGTERM), waits up to 1 s for them, then kills (SIGKILL).
    static void killProcess(const QString &name);

    // ---- Texts of error codes ------------------------------------------------------------------------

    /// The tools' own error code for a result code of the camera SDK; 0 for 0. Codes that are not known
    /// give the code of an unknown error.
    static int SDKCode2LumoCode(unsigned int sdkCode);

    /// Text that names an error code inside a sentence, with the blanks around it: " (Error 1143) ";
    /// empty for 0.
    static QString GenerateSDKCode(unsigned int lumoCode);

    /// Translated sentence that says what an error code means; empty for 0.
    static QString GenerateLumoErrorDesc(int lumoCode);

    // ---- Conversions ---------------------------------------------------------------------------------

    /// Text of a byte field.
    /// @param data    the bytes; null gives an empty text
    /// @param length  how many there are; the text ends at the first NUL among them. Negative: the bytes
    ///                are a C string.
    /// @param codec   name of a text codec; one that is not known is taken as "UTF-8"
    static QString uchar2QString(const unsigned char *data, int length, const char *codec);

    /// MAC address as text, "00:11:1C:F0:12:34", from its upper 16 and lower 32 bits. Bits of high above
    /// the lower 16 are ignored.
    static QString int2StringMacAddress(unsigned int high, unsigned int low);

    // ---- Dialogs -------------------------------------------------------------------------------------

    /// Asks the user for one existing file; empty when cancelled. Parameters as in
    /// QFileDialog::getOpenFileName(). GUI thread only. Link Lumo::ToolBaseDialogs for it.
    static QString getOpenFileName(QWidget *parent, const QString &caption, const QString &dir,
                                   const QString &filter, QString *selectedFilter,
                                   QFileDialog::Options options);
};

#endif
