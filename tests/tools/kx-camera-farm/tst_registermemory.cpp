#include "wire/registermemory.h"

#include <QtTest>

using namespace KxFarm;

namespace {

constexpr std::uint32_t kPage = RegisterMemory::kPageSize;

QByteArray Content(const RegisterMemory &memory, std::uint32_t address, int size)
{
    QByteArray content(size, '?');
    memory.Read(address, reinterpret_cast<std::uint8_t *>(content.data()), static_cast<std::size_t>(size));
    return content;
}

void Write(RegisterMemory *pMemory, std::uint32_t address, const QByteArray &content)
{
    pMemory->Write(address, reinterpret_cast<const std::uint8_t *>(content.constData()),
                   static_cast<std::size_t>(content.size()));
}

} // namespace

/// 4 GB of registers that cost what is written into them, and copies that never see each other's writes.
class tst_RegisterMemory : public QObject
{
    Q_OBJECT

private slots:
    void Read_NothingWritten_IsZero();
    void Read_OneByteWritten_ItsNeighboursAreZero();
    void Write_AcrossPages_IsWhole_data();
    void Write_AcrossPages_IsWhole();
    void WriteWord_AnyNumber_LiesInBigEndianOrder();
    void Fill_PartOfAPage_LeavesTheRest();
    void OwnPages_Written_CountsEachPageOnce();
    void Write_OverABase_BaseKeepsItsContent();
    void Write_OverABase_RestOfThePageIsTheBases();
    void Write_IntoACopy_OriginalKeepsItsContent();
    void Write_IntoTheOriginal_CopyKeepsItsContent();
    void CopyPages_Range_OnlyWholePagesInsideAreTaken();
    void CopyPages_OtherHasNoPageOfItsOwn_BaseShowsAgain();
    void CopyPages_WrittenAfterwards_OtherKeepsItsContent();
    void CopyPages_LastPageThereIs_IsTaken();
};

void tst_RegisterMemory::Read_NothingWritten_IsZero()
{
    const RegisterMemory memory;

    QCOMPARE(Content(memory, kPage - 10, 20), QByteArray(20, 0));
    QCOMPARE(memory.ReadWord(0xFFFFFFFC), 0U);
    QCOMPARE(memory.OwnPages(), std::size_t{0});
}

void tst_RegisterMemory::Read_OneByteWritten_ItsNeighboursAreZero()
{
    RegisterMemory memory;
    Write(&memory, 0x105, "x");

    QCOMPARE(Content(memory, 0x104, 3), QByteArray("\0x\0", 3));
}

void tst_RegisterMemory::Write_AcrossPages_IsWhole_data()
{
    QTest::addColumn<std::uint32_t>("address");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("pages");
    QTest::newRow("one whole page") << kPage << 256 << 1;
    QTest::newRow("the end of one and the start of the next") << 2 * kPage - 1 << 2 << 2;
    QTest::newRow("a page and a byte on each side") << kPage - 1 << 258 << 3;
    QTest::newRow("up to the last byte there is") << 0xFFFFFFFFU - 999 << 1000 << 4;
}

void tst_RegisterMemory::Write_AcrossPages_IsWhole()
{
    QFETCH(std::uint32_t, address);
    QFETCH(int, size);
    QFETCH(int, pages);
    QByteArray content(size, 0);
    for (int i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7 + i / 256);
    RegisterMemory memory;

    Write(&memory, address, content);

    QCOMPARE(Content(memory, address, size), content);
    QCOMPARE(memory.OwnPages(), static_cast<std::size_t>(pages));
}

void tst_RegisterMemory::WriteWord_AnyNumber_LiesInBigEndianOrder()
{
    RegisterMemory memory;

    memory.WriteWord(kPage - 2, 0x01020384);

    QCOMPARE(Content(memory, kPage - 2, 4), QByteArray("\x01\x02\x03\x84"));
    QCOMPARE(memory.ReadWord(kPage - 2), 0x01020384U);
}

void tst_RegisterMemory::Fill_PartOfAPage_LeavesTheRest()
{
    RegisterMemory memory;
    Write(&memory, 0x100, "abcdef");

    memory.Fill(0x102, 3, '-');

    QCOMPARE(Content(memory, 0x100, 6), QByteArray("ab---f"));
}

void tst_RegisterMemory::OwnPages_Written_CountsEachPageOnce()
{
    RegisterMemory memory;
    memory.WriteWord(0, 1);
    memory.WriteWord(kPage - 4, 2);
    memory.WriteWord(0xF0000000, 3);

    QCOMPARE(memory.OwnPages(), std::size_t{2});
}

void tst_RegisterMemory::Write_OverABase_BaseKeepsItsContent()
{
    const auto pBase = std::make_shared<RegisterMemory>();
    pBase->WriteWord(0x100, 1);
    RegisterMemory memory(pBase);
    QCOMPARE(memory.ReadWord(0x100), 1U);
    QCOMPARE(memory.OwnPages(), std::size_t{0});

    memory.WriteWord(0x100, 2);

    QCOMPARE(memory.ReadWord(0x100), 2U);
    QCOMPARE(pBase->ReadWord(0x100), 1U);
}

void tst_RegisterMemory::Write_OverABase_RestOfThePageIsTheBases()
{
    const auto pBase = std::make_shared<RegisterMemory>();
    Write(pBase.get(), 0x100, "abcdef");
    RegisterMemory memory(pBase);

    Write(&memory, 0x102, "X");

    QCOMPARE(Content(memory, 0x100, 6), QByteArray("abXdef"));
}

void tst_RegisterMemory::Write_IntoACopy_OriginalKeepsItsContent()
{
    RegisterMemory original;
    original.WriteWord(0x100, 2);

    RegisterMemory copy = original;
    copy.WriteWord(0x100, 3);

    QCOMPARE(original.ReadWord(0x100), 2U);
    QCOMPARE(copy.ReadWord(0x100), 3U);
}

void tst_RegisterMemory::Write_IntoTheOriginal_CopyKeepsItsContent()
{
    RegisterMemory original;
    original.WriteWord(0x100, 2);

    const RegisterMemory copy = original;
    original.WriteWord(0x100, 3);

    QCOMPARE(copy.ReadWord(0x100), 2U);
    QCOMPARE(original.ReadWord(0x100), 3U);
}

void tst_RegisterMemory::CopyPages_Range_OnlyWholePagesInsideAreTaken()
{
    RegisterMemory memory;
    RegisterMemory other;
    for (std::uint32_t page = 0; page < 5; ++page) {
        memory.WriteWord(page * kPage, 10 + page);
        other.WriteWord(page * kPage, 20 + page);
    }

    memory.CopyPages(other, kPage, 4 * kPage - 1);

    QCOMPARE(memory.ReadWord(0), 10U);
    QCOMPARE(memory.ReadWord(kPage), 21U);
    QCOMPARE(memory.ReadWord(2 * kPage), 22U);
    QCOMPARE(memory.ReadWord(3 * kPage), 13U); // its last byte is outside
    QCOMPARE(memory.ReadWord(4 * kPage), 14U);
}

void tst_RegisterMemory::CopyPages_OtherHasNoPageOfItsOwn_BaseShowsAgain()
{
    const auto pBase = std::make_shared<RegisterMemory>();
    pBase->WriteWord(0x100, 1);
    RegisterMemory memory(pBase);
    memory.WriteWord(0x100, 2);

    memory.CopyPages(RegisterMemory(pBase), 0, 0x1000);

    QCOMPARE(memory.ReadWord(0x100), 1U);
    QCOMPARE(memory.OwnPages(), std::size_t{0});
}

void tst_RegisterMemory::CopyPages_WrittenAfterwards_OtherKeepsItsContent()
{
    RegisterMemory memory;
    RegisterMemory other;
    other.WriteWord(0x100, 1);
    memory.CopyPages(other, 0, 0x1000);

    memory.WriteWord(0x100, 2);

    QCOMPARE(other.ReadWord(0x100), 1U);
}

void tst_RegisterMemory::CopyPages_LastPageThereIs_IsTaken()
{
    RegisterMemory memory;
    RegisterMemory other;
    other.WriteWord(0xFFFFFFFC, 7);

    memory.CopyPages(other, 0xFFFFFF00, std::uint64_t{1} << 32U);

    QCOMPARE(memory.ReadWord(0xFFFFFFFC), 7U);
}

QTEST_APPLESS_MAIN(tst_RegisterMemory)
#include "tst_registermemory.moc"
