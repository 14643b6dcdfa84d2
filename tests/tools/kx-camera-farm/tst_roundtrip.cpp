#include "exportrule.h"
#include "pureclient.h"

#include <QtTest>
#include <random>

using namespace KxFarm;

namespace {

struct Record
{
    QByteArray name;
    QByteArray type;
    QByteArray value;
    bool operator==(const Record &other) const
    {
        return name == other.name && type == other.type && value == other.value;
    }
};

/// A client that reads and writes features as the export and the import do.
class FeatureClient
{
public:
    explicit FeatureClient(SimulatedCamera *pCamera)
        : m_client(pCamera)
        , m_map(pCamera->Device().Model().nodes)
        , m_evaluator(m_map, &m_client)
    {
        m_client.TakeControl();
    }

    QVector<Record> Export(bool respectAvailability)
    {
        QVector<Record> records;
        for (const QByteArray &name : ExportedFeatures(m_map)) {
            const int feature = m_map.Find(name);
            if (respectAvailability && !m_evaluator.Condition(feature, "pIsAvailable", true))
                continue;
            records.append({name, m_map.At(feature).tag, ValueText(feature)});
        }
        return records;
    }

    void Import(const QVector<Record> &records)
    {
        const QList<QByteArrayList> passes = {
            {"Boolean"}, {"Enumeration"}, {"Integer", "IntReg", "Float"}, {"Integer", "IntReg", "Float"}};
        for (const QByteArrayList &types : passes) {
            for (const Record &record : records) {
                if (types.contains(record.type))
                    SetText(m_map.Find(record.name), record.value);
            }
        }
    }

    bool SetText(int feature, const QByteArray &text)
    {
        const Node &node = m_map.At(feature);
        if (node.Is("Float"))
            return m_evaluator.SetFloat(feature, static_cast<double>(text.toFloat()));
        std::int64_t value = text.toUInt();
        if (node.Is("Boolean"))
            value = value > 0 ? OnValue(node) : ParseDescriptionInteger(node.Text("OffValue"));
        else if (m_evaluator.Limit(feature, "Min").value_or(0) < 0)
            value = static_cast<std::int32_t>(text.toUInt());
        return m_evaluator.SetInteger(feature, value);
    }

    /// Gives every exported feature some value; those that are refused keep theirs.
    void Shuffle(unsigned seed)
    {
        std::minstd_rand random(seed);
        for (int round = 0; round < 2; ++round) {
            for (const QByteArray &name : ExportedFeatures(m_map))
                SetRandom(m_map.Find(name), &random);
        }
    }

    NodeEvaluator &Evaluator() { return m_evaluator; }
    PureClient &Client() { return m_client; }

private:
    static std::int64_t OnValue(const Node &node) { return ParseDescriptionInteger(node.Text("OnValue")); }

    QByteArray ValueText(int feature)
    {
        const Node &node = m_map.At(feature);
        if (node.Is("Float"))
            return QByteArray::number(
                static_cast<double>(static_cast<float>(m_evaluator.Float(feature).value_or(-1))), 'f', 6);
        const std::int64_t value = m_evaluator.Integer(feature).value_or(-1);
        if (node.Is("Boolean"))
            return value == OnValue(node) ? "1" : "0";
        return QByteArray::number(static_cast<std::uint32_t>(value & 0xFFFFFFFF));
    }

    void SetRandom(int feature, std::minstd_rand *pRandom)
    {
        const Node &node = m_map.At(feature);
        if (node.Is("Boolean")) {
            SetText(feature, (*pRandom)() % 2 ? "1" : "0");
        } else if (node.Is("Enumeration")) {
            const int entry = node.entries[(*pRandom)() % node.entries.size()];
            m_evaluator.SetInteger(feature, m_evaluator.Integer(entry).value_or(0));
        } else {
            const double low = m_evaluator.Limit(feature, "Min").value_or(0);
            const double high = m_evaluator.Limit(feature, "Max").value_or(1000);
            double value = std::uniform_real_distribution<double>(low, high)(*pRandom);
            const double step = m_evaluator.Limit(feature, "Inc").value_or(1);
            if (node.Is("Float"))
                m_evaluator.SetFloat(feature, value);
            else
                m_evaluator.SetInteger(
                    feature, static_cast<std::int64_t>(low + std::floor((value - low) / step) * step));
        }
    }

    PureClient m_client;
    const NodeMap &m_map;
    NodeEvaluator m_evaluator;
};

} // namespace

/// What the built-in camera is for: exports and imports that prove something.
class tst_RoundTrip : public QObject
{
    Q_OBJECT

private slots:
    void Export_BuiltinCamera_HasManyFeaturesOfEveryType();
    void Import_SettingsOfAnotherCamera_ExportIsEqual_data();
    void Import_SettingsOfAnotherCamera_ExportIsEqual();
    void UserSet_SavedAndLoaded_SettingsComeBack();
    void UserSet_DefaultLoaded_FactorySettingsComeBack();
    void UserSet_FactorySetSaved_IsRefused();
    void UserSet_ChosenForStart_IsThereAfterAReboot();
    void Write_BeyondALimitThatMoved_IsRefused();
    void Write_EntryThatIsNotImplemented_IsRefused();
    void Write_LockedFeature_IsRefusedAndHasItsPowerUpValue();
    void Write_BinningDoubled_WidthFollowsItsLimit();
    void Read_EveryFeature_HasAValue();
};

void tst_RoundTrip::Export_BuiltinCamera_HasManyFeaturesOfEveryType()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    QHash<QByteArray, int> counts;
    const auto records = client.Export(false);
    for (const Record &record : records)
        ++counts[record.type];

    QVERIFY(records.size() >= 80);
    for (const char *type : {"Boolean", "Integer", "IntReg", "Float", "Enumeration"})
        QVERIFY2(counts.value(type) >= 5, type);
}

void tst_RoundTrip::Import_SettingsOfAnotherCamera_ExportIsEqual_data()
{
    QTest::addColumn<unsigned>("seed");
    QTest::addColumn<bool>("respectAvailability");
    for (unsigned seed = 1; seed <= 20; ++seed) {
        QTest::addRow("settings %u, unavailable ones too", seed) << seed << false;
        QTest::addRow("settings %u, available ones", seed) << seed << true;
    }
}

void tst_RoundTrip::Import_SettingsOfAnotherCamera_ExportIsEqual()
{
    QFETCH(unsigned, seed);
    QFETCH(bool, respectAvailability);
    const auto pFrom = MakeBuiltinCamera();
    const auto pTo = MakeBuiltinCamera();
    FeatureClient from(pFrom.get());
    FeatureClient to(pTo.get());
    from.Shuffle(seed);
    to.Shuffle(seed + 1000);
    const auto exported = from.Export(respectAvailability);
    QVERIFY(!(to.Export(respectAvailability) == exported));

    to.Import(exported);

    const auto again = to.Export(respectAvailability);
    for (int i = 0; i < std::min(exported.size(), again.size()); ++i) {
        QCOMPARE(again.at(i).name, exported.at(i).name);
        QCOMPARE(again.at(i).name + '=' + again.at(i).value,
                 exported.at(i).name + '=' + exported.at(i).value);
    }
    QCOMPARE(again.size(), exported.size());
}

void tst_RoundTrip::UserSet_SavedAndLoaded_SettingsComeBack()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    const NodeMap &map = client.Evaluator().Map();
    client.Shuffle(7);
    const auto saved = client.Export(false);
    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetSelector"), 2));
    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetSave"), 1));
    client.Shuffle(8);
    QVERIFY(!(client.Export(false) == saved));

    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetLoad"), 1));

    QVERIFY(client.Export(false) == saved);
    QCOMPARE(client.Evaluator().Integer(map.Find("UserSetSelector")).value_or(-1), std::int64_t{2});
}

void tst_RoundTrip::UserSet_DefaultLoaded_FactorySettingsComeBack()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    const auto factory = client.Export(false);
    client.Shuffle(7);

    QVERIFY(client.Evaluator().SetInteger(client.Evaluator().Map().Find("UserSetLoad"), 1));

    QVERIFY(client.Export(false) == factory);
}

void tst_RoundTrip::UserSet_FactorySetSaved_IsRefused()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());

    QVERIFY(!client.Evaluator().SetInteger(client.Evaluator().Map().Find("UserSetSave"), 1));

    QCOMPARE(client.Client().LastStatus(), Gvcp::STATUS_ACCESS_DENIED);
}

void tst_RoundTrip::UserSet_ChosenForStart_IsThereAfterAReboot()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    const NodeMap &map = client.Evaluator().Map();
    client.Shuffle(7);
    const auto saved = client.Export(false);
    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetSelector"), 1));
    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetSave"), 1));
    QVERIFY(client.Evaluator().SetInteger(map.Find("UserSetDefault"), 1));
    client.Shuffle(9);

    QVERIFY(client.Evaluator().SetInteger(map.Find("DeviceReset"), 1));

    QVERIFY(client.Export(false) == saved);
    QCOMPARE(client.Evaluator().Integer(map.Find("UserSetDefault")).value_or(-1), std::int64_t{1});
    QCOMPARE(client.Evaluator().Integer(map.Find("UserSetSelector")).value_or(-1), std::int64_t{0});
}

void tst_RoundTrip::Write_BeyondALimitThatMoved_IsRefused()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    NodeEvaluator &features = client.Evaluator();
    const NodeMap &map = features.Map();
    QVERIFY(!features.SetInteger(map.Find("OffsetX"), 800));
    QCOMPARE(client.Client().LastStatus(), Gvcp::STATUS_INVALID_PARAMETER);
    QVERIFY(features.SetInteger(map.Find("Width"), 640));

    QVERIFY(features.SetInteger(map.Find("OffsetX"), 800));

    QVERIFY(!features.SetInteger(map.Find("Width"), 1140));
    QCOMPARE(features.Integer(map.Find("Width")).value_or(-1), std::int64_t{640});
}

void tst_RoundTrip::Write_EntryThatIsNotImplemented_IsRefused()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    const int format = client.Evaluator().Map().Find("PixelFormat");

    QVERIFY(!client.Evaluator().SetInteger(format, 0x81080001));
    QCOMPARE(client.Client().LastStatus(), Gvcp::STATUS_INVALID_PARAMETER);
    QVERIFY(client.Evaluator().SetInteger(format, 0x01080009));
}

void tst_RoundTrip::Write_LockedFeature_IsRefusedAndHasItsPowerUpValue()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    NodeEvaluator &features = client.Evaluator();
    const int exposure = features.Map().Find("ExposureTime");
    QVERIFY(features.SetFloat(exposure, 250.0));
    QVERIFY(features.SetInteger(features.Map().Find("ExposureAuto"), 2));

    QVERIFY(!features.SetFloat(exposure, 500.0));

    QCOMPARE(client.Client().LastStatus(), Gvcp::STATUS_WRITE_PROTECT);
    QCOMPARE(features.Float(exposure).value_or(-1), 10000.0);
}

void tst_RoundTrip::Write_BinningDoubled_WidthFollowsItsLimit()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    NodeEvaluator &features = client.Evaluator();
    QCOMPARE(features.Integer(features.Map().Find("Width")).value_or(-1), std::int64_t{1936});

    QVERIFY(features.SetInteger(features.Map().Find("BinningHorizontal"), 2));

    QCOMPARE(features.Integer(features.Map().Find("Width")).value_or(-1), std::int64_t{968});
}

void tst_RoundTrip::Read_EveryFeature_HasAValue()
{
    const auto pCamera = MakeBuiltinCamera();
    FeatureClient client(pCamera.get());
    const NodeMap &map = client.Evaluator().Map();
    int count = 0;
    for (int i = 0; i < map.Count(); ++i) {
        const Node &node = map.At(i);
        if (!node.Is("Integer") && !node.Is("Float") && !node.Is("Enumeration") && !node.Is("Boolean"))
            continue;
        ++count;
        QVERIFY2(client.Evaluator().Float(i).has_value(), node.name.constData());
    }
    QVERIFY(count >= 150);
}

QTEST_APPLESS_MAIN(tst_RoundTrip)
#include "tst_roundtrip.moc"
