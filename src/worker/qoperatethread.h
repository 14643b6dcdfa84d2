#ifndef WORKER_QOPERATETHREAD_H
#define WORKER_QOPERATETHREAD_H

#include <QDomDocument>
#include <QDomElement>
#include <QList>
#include <QMap>
#include <QString>
#include <QThread>

#include <optional>

#include <DevListMgr/structdeviceinfo.h>

/// Carries out one import or one export for one camera, in a thread of its own.
///
/// Made and set up in the main thread, then started; until finished() no other thread may touch it. The
/// object stays in the thread that made it, so its signals, emitted while run() works, arrive there
/// queued. It can be set up and started again for the next batch. It never touches a widget.
///
/// A failure is one SigThreadInfo() with bFailed true; success is told by nothing but its absence. An
/// export whose description buffer was refused sends SigEndThread() twice, an import of a file with a
/// record that is not streamable never ends (FindEndlessRecord() in featurefilereader.h finds such a file
/// beforehand), and a thread type out of range sends SigBeginThread() alone.
class QOperateThread : public QThread
{
    Q_OBJECT

public:
    /// Values of the thread type, in the signals too.
    enum ThreadType : unsigned int
    {
        FeatureBagImportType = 0,
        FeatureBagExportType = 1,
        FeatureXmlImportType = 2,
        FeatureXmlExportType = 3,
    };

    explicit QOperateThread(QObject *parent = nullptr);

    /// Does not close a camera that is still open; every operation has closed its own.
    ~QOperateThread() override;

    /// Sets up an import of the feature file strFilePath into the camera. Not while the thread runs.
    void SetImportThreadInfo(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, QString strFilePath);

    /// Sets up an export of the camera's features into the directory strFilePath. Not while the thread runs.
    void SetExportThreadInfo(const _STRUCT_DEVICE_INFO_ &stDeviceInfo, QString strFilePath);

    /// Whether the last export put its whole file on the disk, which no signal tells: an export to a disk
    /// that is full sends no failure. Not while the thread runs.
    bool IsFileWritten() const { return m_bFileWritten; }

signals:
    /// The operation starts.
    void SigBeginThread(long nDeviceID, unsigned int nThreadType);

    /// The operation is over, well or not. strFilePath is the path that was set: the file of an import, the
    /// directory of an export.
    void SigEndThread(long nDeviceID, unsigned int nThreadType, QString strFilePath);

    /// A translated message about the camera; bFailed marks a failure.
    void SigThreadInfo(long nDeviceID, const QString &strMsg, bool bFailed);

protected:
    void run() override;

    // ---- Life of the camera's handle (qoperatethread.cpp) --------------------------------------------

    /// Makes m_hDevice and opens the camera for this tool alone. False leaves a handle that was made to
    /// ReleaseThread().
    bool OpenDevice();

    /// Closes and destroys m_hDevice if there is one, then ExitThread().
    void ReleaseThread();

    /// Sends SigEndThread().
    void ExitThread();

    // ---- Operations (featurebagtransfer.cpp, featurexmlimport.cpp, featurexmlexport.cpp) ----------------

    void FeatureBagImport();
    void FeatureBagExport();
    void FeatureXmlImport();
    void FeatureXmlExport();

    // ---- Description analysis (descriptionfetch.cpp, descriptionanalysis.cpp) -------------------------
    // The rules are those of src/description; what is here applies them to the members below.

    /// Adds the named elements below element to m_mapDomElement, enumeration entries and what is inside
    /// them left out. The last element of a name wins.
    void GenerateDomElementMap(QDomElement &element);

    /// The element of this name. False, with element left alone, when there is none.
    bool GetDomElementNode(const QString &strName, QDomElement &element);

    /// Fills m_mapFeatureInvalidator for every value feature at and below element; needs m_mapDomElement.
    void GenerateFeaturesInvalidatorMap(QDomElement &element);

    /// Fills the entry of one feature; none when nothing invalidates it through its pointers.
    void InsertFeatureInvalidator(QDomElement &feature);

    /// Appends the names met on the walk from the node strNodeName along its pointers, in the order and as
    /// often as they are met. A walk beyond the bounds of PointerGraph appends each name once.
    void GenerateInvalidatorListByProperty(const QString &strNodeName, QList<QString> &listInvalidator,
                                           QList<QString> &listVariable);

    /// Whether list holds exactly strName.
    bool IsFeatureInQList(const QString &strName, const QList<QString> &list);

    /// Features whose entry in m_mapFeatureInvalidator holds strName, each once, in no particular order.
    QList<QString> GetFeatureInvalidatorList(const QString &strName);

    /// Fetches the open camera's description, analyses it and fills m_mapFeatureXml with the features that
    /// a user set stores. A description that cannot be parsed leaves the three maps as they were.
    void GenerateFeatureXmlMap();

    /// Memory for nSize bytes, zero-filled, freed with std::free(); null when there is none. A seam for
    /// tests: nothing else can refuse memory at will.
    virtual char *AllocateDescriptionBuffer(unsigned int nSize);

    bool m_bRunning = true;                                // cleared by the first ExitThread(), for good
    unsigned int m_nThreadType = FeatureXmlImportType;     // one of ThreadType
    _STRUCT_DEVICE_INFO_ m_stDeviceInfo;                   // the camera
    QString m_strFilePath;                                 // import: the file; export: the directory
    void *m_hDevice = nullptr;                             // owned; null while no camera is open
    QMap<QString, QDomElement> m_mapDomElement;            // the description's nodes by name
    QMap<QString, QList<QString>> m_mapFeatureInvalidator; // per feature: what invalidates it
    QMap<QString, QDomElement> m_mapFeatureXml;            // features to export, in name order
    QDomDocument m_domDocument;                            // the description

private:
    /// The description's text; empty when there is none, and no text at all when the first buffer is refused.
    std::optional<QString> FetchDescription();

    /// Reports a failure: the log entry, then the message.
    void Fail(const char *szFunction, const QString &strLogText, const QString &strMessage);

    bool m_bFileWritten = false; // by the last export
};

#endif
