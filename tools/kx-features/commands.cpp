#include "commands.h"

#include <QCoreApplication>
#include <QTextStream>

#include <unistd.h>

#include <featurefile/featurefileoutput.h>

#include "batch.h"
#include "camerafinder.h"
#include "importfile.h"
#include "interrupt.h"
#include "output.h"
#include "report.h"

namespace {

int ListCameras(const CommandLine &command)
{
    const QVector<Camera> cameras = FindAllCameras(command.nSearchMs);
    Output::Print(command.bJson ? QString::fromUtf8(Report::ListJson(cameras)) : Report::Table(cameras));
    return ExitSuccess;
}

// Shows a running batch on the terminal and its outcome at the end.
class BatchView
{
public:
    BatchView(const Batch &batch, const QStringList &missing, bool json)
        : m_batch(batch)
        , m_missing(missing)
        , m_bJson(json)
        , m_bTerminal(isatty(STDERR_FILENO) == 1)
    {
    }

    void ShowCamera(int index) const
    {
        if (m_bJson) {
            ShowProgress();
            return;
        }
        ClearProgress();
        Output::Print(Report::ResultLine(m_batch.Cameras().at(index), m_batch.Results().at(index)) +
                      QLatin1Char('\n'));
        ShowProgress();
    }

    void ShowEnd() const
    {
        ClearProgress();
        if (m_bJson) {
            Output::Print(
                QString::fromUtf8(Report::BatchJson(m_batch.Cameras(), m_batch.Results(), m_missing)));
            return;
        }
        for (const QString &what : m_missing) {
            Output::Print(Report::MissingLine(what) + QLatin1Char('\n'));
        }
    }

    void ShowInterrupted() const
    {
        ClearProgress();
        for (int index = 0; !m_bJson && index < m_batch.Cameras().size(); ++index) {
            if (!m_batch.Results().at(index).bDone) {
                ShowCamera(index);
            }
        }
        ShowEnd();
    }

private:
    void ShowProgress() const
    {
        const int total = m_batch.Cameras().size();
        if (m_bTerminal && m_batch.DoneCount() < total) {
            Output::PrintError(QLatin1Char('\r') +
                               Report::Progress(m_batch.DoneCount(), total, m_batch.FailedCount()));
        }
    }

    void ClearProgress() const
    {
        if (m_bTerminal) {
            Output::PrintError(QStringLiteral("\r\x1b[K")); // to the line's start, erase it
        }
    }

    const Batch &m_batch;
    const QStringList m_missing;
    const bool m_bJson;
    const bool m_bTerminal;
};

// Ends the process now. The helper of each open camera sees that its parent is gone and releases the
// camera; the gate makes sure that no file is being written at this moment.
[[noreturn]] void EndInterrupted(const BatchView &view)
{
    FeatureFileOutput::Close();
    view.ShowInterrupted();
    _exit(ExitInterrupted);
}

// Which of two cameras wrote the file last would be chance, and nobody would notice.
void RefuseSharedFiles(Batch *pBatch, const QString &folder)
{
    const QStringList shared = SharedFiles(pBatch->Cameras(), folder);
    for (int index = 0; index < shared.size(); ++index) {
        pBatch->Refuse(index, shared.at(index));
    }
}

// What a search found unreachable would only be waited for, or is at an address of another network.
void RefuseUnreachable(Batch *pBatch)
{
    for (int index = 0; index < pBatch->Cameras().size(); ++index) {
        if (pBatch->Cameras().at(index).record.nAccessStatus == KX_CC_ACCESS_UNREACHABLE) {
            pBatch->Refuse(index, QStringLiteral("Not opened: in another network, or without an answer."));
        }
    }
}

// @param source  what the workers of an import read
int RunBatch(const CommandLine &command, Batch::Operation operation, const QString &source = {})
{
    const FoundCameras found = FindChosenCameras(command.choice, command.nSearchMs);
    if (found.cameras.isEmpty() && found.missing.isEmpty()) {
        Output::PrintError(QStringLiteral("kx-features: no camera was found\n"));
        if (command.bJson) {
            Output::Print(QString::fromUtf8(Report::ListJson({})));
        }
        return ExitFailure;
    }

    Batch batch(operation, found.cameras, command.strPath);
    if (operation == Batch::Operation::Import) {
        batch.SetSource(source);
    } else if (!command.bOverwrite) {
        RefuseSharedFiles(&batch, command.strPath);
    }
    if (!command.choice.IsByAddressOnly()) {
        RefuseUnreachable(&batch);
    }
    const BatchView view(batch, found.missing, command.bJson);
    const Interrupt interrupt;
    QObject::connect(&batch, &Batch::CameraDone, &batch, [&view](int index) { view.ShowCamera(index); });
    QObject::connect(&batch, &Batch::Finished, QCoreApplication::instance(), &QCoreApplication::quit);
    QObject::connect(&interrupt, &Interrupt::Raised, &batch, [&view] { EndInterrupted(view); });

    batch.Start();
    QCoreApplication::exec();
    view.ShowEnd();
    return batch.FailedCount() == 0 && found.missing.isEmpty() ? ExitSuccess : ExitFailure;
}

int Import(const CommandLine &command)
{
    ImportFile file;
    const QString refusal = file.Read(command.strPath);
    if (!refusal.isEmpty()) {
        Output::PrintError(
            QStringLiteral("kx-features: %1 cannot be imported: %2\n").arg(command.strPath, refusal));
        return ExitWrongUsage;
    }
    return RunBatch(command, Batch::Operation::Import, file.WorkerPath());
}

int Run(const CommandLine &command)
{
    switch (command.action) {
    case CommandLine::Action::ShowText:
        Output::Print(command.strText);
        return ExitSuccess;
    case CommandLine::Action::Wrong:
        Output::PrintError(command.strText + QLatin1Char('\n'));
        return ExitWrongUsage;
    case CommandLine::Action::List:
        return ListCameras(command);
    case CommandLine::Action::Export:
        return RunBatch(command, Batch::Operation::Export);
    case CommandLine::Action::Import:
        return Import(command);
    }
    return ExitWrongUsage;
}

} // namespace

int RunCommand(const CommandLine &command)
{
    const int code = Run(command);
    if (Output::IsComplete()) {
        return code;
    }
    Output::PrintError(QStringLiteral("kx-features: standard output could not be written\n"));
    return code == ExitSuccess ? ExitFailure : code;
}
