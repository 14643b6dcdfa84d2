#include "faultbatch.h"

#include <QDir>
#include <QElapsedTimer>
#include <QThread>
#include <QUuid>

#include "processuse.h"

namespace {

const char kMarkerName[] = "KX_TEST_BATCH=";
const qint64 kFreeAgainMs = 15000; // a heartbeat of 3 s, a reboot of 5 s, a busy machine

QString NameOf(int camera)
{
    return QStringLiteral("SimCam-150_SIM000%1.kfb").arg(camera);
}

QMap<QString, QByteArray> FilesIn(const QString &folder)
{
    QMap<QString, QByteArray> files;
    const QStringList names = QDir(folder).entryList(QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        files.insert(name, ReadFile(folder + '/' + name));
    return files;
}

QList<QByteArray> WithoutWidth(const QList<QByteArray> &records)
{
    QList<QByteArray> others;
    for (const QByteArray &record : records) {
        if (!record.contains("<Name>Width<") && !record.contains("<Name>Breadth<"))
            others << record;
    }
    return others;
}

bool IsPartOf(const QList<QByteArray> &records, const QList<QByteArray> &all)
{
    return std::all_of(records.begin(), records.end(),
                       [&all](const QByteArray &record) { return all.contains(record); });
}

} // namespace

QList<QByteArray> RecordsOf(const QByteArray &file)
{
    QList<QByteArray> records;
    int begin = file.indexOf("<Feature>");
    while (begin >= 0) {
        const int next = file.indexOf("<Feature>", begin + 1);
        const int end = next < 0 ? file.lastIndexOf("</Features>") : next;
        records << file.mid(begin, end - begin);
        begin = next;
    }
    return records;
}

bool IsWhole(const QByteArray &file)
{
    return file.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<Features>\r\n<DeviceModelName>") &&
           file.endsWith("\r\n</Features>") && file.count("</Feature>") == file.count("<Feature>");
}

QList<qint64> ProcessesMarked(const QByteArray &marker)
{
    QList<qint64> marked;
    const QStringList names = QDir("/proc").entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        const qint64 id = name.toLongLong();
        if (id > 0 && ReadFile("/proc/" + name + "/environ").contains(marker))
            marked << id;
    }
    return marked;
}

QString CheckFile(const QByteArray &file, const QByteArray &healthy, FaultBatch::Wanted wanted)
{
    using Wanted = FaultBatch::Wanted;
    const QList<QByteArray> records = RecordsOf(file);
    const QList<QByteArray> all = RecordsOf(healthy);
    const bool good =
        IsWhole(file) && (wanted == Wanted::SameFile      ? file == healthy
                          : wanted == Wanted::AllButWidth ? WithoutWidth(records) == WithoutWidth(all)
                                                          : IsPartOf(records, all));
    return good ? QString()
                : QStringLiteral("%1 records, expected %2: %3")
                      .arg(records.size())
                      .arg(all.size())
                      .arg(QString::fromUtf8(file));
}

QString FaultBatch::StartFarm(const QStringList &more)
{
    if (!m_farm.Start(QStringList{"--count", "3", "--first-address", Address(1)} + more))
        return m_farm.Error();
    return {};
}

QString FaultBatch::Prepare()
{
    QString error = StartFarm();
    if (!error.isEmpty())
        return error;
    const Outcome outcome = Export();
    m_reference = outcome.files.value(NameOf(1));
    const bool good = outcome.run.exitCode == 0 && outcome.files.size() == 3 && IsWhole(m_reference) &&
                      outcome.files.value(NameOf(2)) == m_reference &&
                      outcome.files.value(NameOf(3)) == m_reference;
    return good ? QString() : "healthy cameras: " + QString::fromUtf8(outcome.run.out + outcome.run.err);
}

QString FaultBatch::SetFault(const QByteArray &fault)
{
    const QByteArray answer = m_farm.Command("set " + Faulty().toLatin1() + ' ' + fault);
    return answer == "ok" ? QString() : "the farm says " + QString::fromUtf8(answer);
}

FaultBatch::Outcome FaultBatch::Run(QStringList arguments, const QString &folder)
{
    Outcome outcome;
    outcome.marker = kMarkerName + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    arguments << "--json"
              << "--address" << Address(1) << Address(2) << Address(3);
    QElapsedTimer timer;
    timer.start();
    outcome.run = RunCompanion(arguments, {QString::fromLatin1(outcome.marker)});
    outcome.nMilliseconds = timer.elapsed();
    outcome.files = FilesIn(folder);
    return outcome;
}

FaultBatch::Outcome FaultBatch::Export(const QStringList &more)
{
    const QTemporaryDir folder;
    return Run(QStringList{"export", "--to", folder.path()} + more, folder.path());
}

FaultBatch::Outcome FaultBatch::Import(const QByteArray &file)
{
    const QTemporaryDir folder;
    QFile out(folder.filePath("import.kfb"));
    if (!out.open(QIODevice::WriteOnly) || out.write(file) != file.size())
        return {};
    out.close();
    return Run({"import", out.fileName()}, folder.path());
}

QString FaultBatch::CheckNeighbours(const Outcome &outcome) const
{
    for (const int camera : {1, 3}) {
        if (outcome.run.Camera(Address(camera)).value("result") != "ok")
            return "a neighbour failed: " + QString::fromUtf8(outcome.run.out + outcome.run.err);
        if (outcome.files.value(NameOf(camera)) != m_reference)
            return QStringLiteral("another file of neighbour %1").arg(camera);
    }
    return {};
}

QString FaultBatch::CheckFaulty(const Outcome &outcome, Wanted wanted) const
{
    const QJsonObject row = outcome.run.Camera(Faulty());
    const QString text = row.value("message").toString();
    if (wanted == Wanted::NoFile) {
        if (outcome.run.exitCode != 1 || row.value("result") != "failed")
            return QStringLiteral("success, exit code %1").arg(outcome.run.exitCode);
        if (text != "Failed to export features.Failed to open device.")
            return "the row says " + text;
        return outcome.files.size() == 2 ? QString() : "files: " + outcome.files.keys().join(' ');
    }
    if (outcome.run.exitCode != 0 || row.value("result") != "ok" || !text.isEmpty())
        return QStringLiteral("exit code %1, the row says \"%2\"").arg(outcome.run.exitCode).arg(text);
    if (outcome.files.size() != 3)
        return "files: " + outcome.files.keys().join(' ');
    return CheckFile(outcome.files.value(NameOf(2)), m_reference, wanted);
}

QString FaultBatch::CheckLeftovers(const Outcome &outcome) const
{
    QElapsedTimer timer;
    timer.start();
    // A killed process is visible until its parent, init now, has taken note of it.
    while (!ProcessesMarked(outcome.marker).isEmpty()) {
        if (timer.elapsed() > 5000)
            return "a process of the batch is left";
        QThread::msleep(20);
    }
    return {};
}

QString FaultBatch::CheckFreeAgain()
{
    m_farm.Command("clear *");
    QElapsedTimer timer;
    timer.start();
    QString access;
    do {
        access.clear();
        const QJsonArray cameras = RunCompanion({"list", "--json", "--search-ms", "300"}).Json();
        for (const QJsonValue value : cameras) {
            const QJsonObject camera = value.toObject();
            const QString address = camera.value("address").toString();
            // By exclusion, because a fault may have given it another address or name.
            if (address.startsWith(m_strNetwork) && address != Address(1) && address != Address(3))
                access += camera.value("access").toString();
        }
        if (access == "free")
            return {};
        QThread::msleep(100);
    } while (timer.elapsed() < kFreeAgainMs);
    return "without the fault the camera is \"" + access + '"';
}

QString FaultBatch::Play(const QByteArray &fault, Wanted wanted, qint64 longestMs)
{
    QString error = StartFarm();
    if (error.isEmpty())
        error = SetFault(fault);
    if (!error.isEmpty())
        return error;
    const int nBefore = DescriptorsOf(m_farm.ProcessId());
    const Outcome outcome = Export();
    error = CheckFaulty(outcome, wanted);
    if (error.isEmpty())
        error = CheckNeighbours(outcome);
    if (error.isEmpty())
        error = CheckLeftovers(outcome);
    if (!error.isEmpty())
        return error;
    if (outcome.nMilliseconds > longestMs)
        return QStringLiteral("it took %1 ms").arg(outcome.nMilliseconds);
    if (DescriptorsOf(m_farm.ProcessId()) > nBefore)
        return QStringLiteral("the farm has more descriptors");
    return CheckFreeAgain();
}
