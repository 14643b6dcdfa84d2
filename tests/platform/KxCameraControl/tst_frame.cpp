#include <QTest>

#include <cstring>
#include <limits>

#include "ipc/frame.h"

using namespace kxcc;

namespace {

std::vector<uint8_t> BodyOf(const std::vector<uint8_t> &frame, size_t nBlob = 0)
{
    return {frame.begin() + kFrameHeadSize, frame.end() - static_cast<std::ptrdiff_t>(nBlob)};
}

std::array<uint8_t, kFrameHeadSize> Head(uint32_t nBody, uint32_t nBlob)
{
    std::array<uint8_t, kFrameHeadSize> bytes{};
    std::memcpy(bytes.data(), &nBody, 4);
    std::memcpy(bytes.data() + 4, &nBlob, 4);
    return bytes;
}

} // namespace

class tst_Frame : public QObject
{
    Q_OBJECT

private slots:
    void Request_EncodedAndDecoded_IsTheSame();
    void Reply_EncodedAndDecoded_IsTheSame();
    void DecodeHead_SizesOutOfBounds_AreRefused();
    void DecodeRequest_Truncated_IsRefused();
    void DecodeRequest_UnknownOperation_IsRefused();
    void DecodeReply_AnyByteChanged_IsRefusedOrStaysInBounds();
    void DecodeReply_OfARequest_IsRefused();
};

void tst_Frame::Request_EncodedAndDecoded_IsTheSame()
{
    Request request;
    request.nSerial = 7;
    request.operation = Operation::SetFloat;
    request.strName = std::string("Gain\xff", 5); // no UTF-8
    request.nNumber = std::numeric_limits<int64_t>::min();
    request.dReal = -0.1;
    request.blob = {1, 2, 3};

    const std::vector<uint8_t> frame = EncodeRequest(request);
    const auto decoded = DecodeRequest(BodyOf(frame, 3));

    QVERIFY(decoded);
    QCOMPARE(decoded->nSerial, 7U);
    QVERIFY(decoded->operation == Operation::SetFloat);
    QCOMPARE(decoded->strName, request.strName);
    QCOMPARE(decoded->nNumber, request.nNumber);
    QCOMPARE(decoded->dReal, -0.1);
    QCOMPARE(std::vector<uint8_t>(frame.end() - 3, frame.end()), request.blob);
}

void tst_Frame::Reply_EncodedAndDecoded_IsTheSame()
{
    Reply reply;
    reply.nSerial = 0xFFFFFFFF;
    reply.bProgress = true;
    reply.nCode = -5;
    reply.nNumber = std::numeric_limits<int64_t>::max();
    reply.dReal = 1e300;

    const auto decoded = DecodeReply(BodyOf(EncodeReply(reply)));

    QVERIFY(decoded);
    QCOMPARE(decoded->nSerial, reply.nSerial);
    QCOMPARE(decoded->bProgress, true);
    QCOMPARE(decoded->nCode, -5);
    QCOMPARE(decoded->nNumber, reply.nNumber);
    QCOMPARE(decoded->dReal, 1e300);
}

void tst_Frame::DecodeHead_SizesOutOfBounds_AreRefused()
{
    QVERIFY(DecodeHead(Head(1, 0)));
    QVERIFY(DecodeHead(Head(kMaxBody, kMaxBlob)));
    QVERIFY(!DecodeHead(Head(0, 0)));
    QVERIFY(!DecodeHead(Head(kMaxBody + 1, 0)));
    QVERIFY(!DecodeHead(Head(1, kMaxBlob + 1)));
    QVERIFY(!DecodeHead(Head(0xFFFFFFFF, 0xFFFFFFFF)));
}

void tst_Frame::DecodeRequest_Truncated_IsRefused()
{
    Request request;
    request.strName = "ExposureTime";
    const std::vector<uint8_t> body = BodyOf(EncodeRequest(request));
    for (size_t nSize = 0; nSize < body.size(); ++nSize) {
        const std::vector<uint8_t> part(body.begin(), body.begin() + static_cast<std::ptrdiff_t>(nSize));
        QVERIFY2(!DecodeRequest(part), qPrintable(QString::number(nSize)));
    }
}

void tst_Frame::DecodeRequest_UnknownOperation_IsRefused()
{
    Request request;
    request.operation = static_cast<Operation>(0);
    QVERIFY(!DecodeRequest(BodyOf(EncodeRequest(request))));
    request.operation = static_cast<Operation>(200);
    QVERIFY(!DecodeRequest(BodyOf(EncodeRequest(request))));
}

void tst_Frame::DecodeReply_AnyByteChanged_IsRefusedOrStaysInBounds()
{
    Reply reply;
    reply.nSerial = 3;
    const std::vector<uint8_t> body = BodyOf(EncodeReply(reply));
    int nRefused = 0;
    for (size_t i = 0; i < body.size(); ++i) {
        std::vector<uint8_t> changed = body;
        changed[i] ^= 0xFF;
        nRefused += DecodeReply(changed) ? 0 : 1;
    }
    QVERIFY(nRefused > 0); // a boolean of 0xFF, and padding that is not zero
}

void tst_Frame::DecodeReply_OfARequest_IsRefused()
{
    Request request;
    request.strName = "Width";
    QVERIFY(!DecodeReply(BodyOf(EncodeRequest(request))));
}

QTEST_APPLESS_MAIN(tst_Frame)
#include "tst_frame.moc"
