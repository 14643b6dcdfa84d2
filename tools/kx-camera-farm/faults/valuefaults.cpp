#include "faults/faultfilter.h"
#include "faults/numberfault.h"

#include <QList>

namespace KxFarm {

namespace {

/// Numbers that a camera refuses elsewhere are moved to where they may be.
class Clamping : public Fault
{
public:
    void Start(Camera *pCamera) override { pCamera->Device().SetClamping(true); }
    void Stop(Camera *pCamera) override { pCamera->Device().SetClamping(false); }
};

class Rounding : public Fault
{
public:
    void Start(Camera *pCamera) override { pCamera->Device().SetRounding(true); }
    void Stop(Camera *pCamera) override { pCamera->Device().SetRounding(false); }
};

bool TouchesFeature(Exchange *pExchange, int feature)
{
    const auto field = pExchange->camera.Device().FieldOf(feature);
    return field && Touches(pExchange->request, field->address);
}

/// The registers behind some features are refused.
class FeatureRefused : public Fault
{
public:
    FeatureRefused(std::vector<int> features, Gvcp::Status status, bool readsToo)
        : m_listFeatures(std::move(features))
        , m_status(status)
        , m_bReadsToo(readsToo)
    {
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        if (!m_bReadsToo && !IsWrite(pExchange->request))
            return;
        for (const int feature : m_listFeatures) {
            if (TouchesFeature(pExchange, feature))
                pExchange->refusedWith = m_status;
        }
    }

private:
    const std::vector<int> m_listFeatures;
    const Gvcp::Status m_status;
    const bool m_bReadsToo;
};

/// Writes to some features are acknowledged and change nothing.
class FeatureIgnored : public Fault
{
public:
    explicit FeatureIgnored(std::vector<int> features)
        : m_listFeatures(std::move(features))
    {
    }
    void BeforeCommand(Exchange *pExchange) override
    {
        m_pBefore.reset();
        for (const int feature : m_listFeatures) {
            if (IsWrite(pExchange->request) && TouchesFeature(pExchange, feature))
                m_pBefore = std::make_unique<RegisterMemory>(pExchange->camera.Memory());
        }
    }
    void AfterCommand(Exchange *pExchange) override
    {
        if (m_pBefore)
            pExchange->camera.Memory() = *m_pBefore;
    }

private:
    const std::vector<int> m_listFeatures;
    std::unique_ptr<RegisterMemory> m_pBefore;
};

/// A write to one feature does something to another one.
class Coupling : public Fault
{
public:
    Coupling(int cause, int effect)
        : m_nCause(cause)
        , m_nEffect(effect)
    {
    }
    void AfterCommand(Exchange *pExchange) override
    {
        if (IsWrite(pExchange->request) && pExchange->Succeeded() && TouchesFeature(pExchange, m_nCause))
            Apply(&pExchange->camera.Device());
    }
    virtual void Apply(Firmware *pFirmware) = 0;

protected:
    int Effect() const { return m_nEffect; }

private:
    const int m_nCause;
    const int m_nEffect;
};

/// The other feature goes back to its value at power-up.
class Resets : public Coupling
{
public:
    using Coupling::Coupling;
    void Apply(Firmware *pFirmware) override { pFirmware->ToPowerUpValue(Effect()); }
};

/// The other feature's largest value becomes half of what it was.
class LimitMoves : public Coupling
{
public:
    using Coupling::Coupling;
    void Apply(Firmware *pFirmware) override
    {
        if (const auto maximum = pFirmware->Maximum(Effect()))
            pFirmware->SetMaximum(Effect(), *maximum / 2);
    }
    void Stop(Camera *pCamera) override { pCamera->Device().SetMaximum(Effect(), std::nullopt); }
};

int FindFeature(const QByteArray &name, const Camera &camera, QString *pError)
{
    const int feature = camera.Model().nodes.Find(name);
    if (feature < 0)
        *pError = QStringLiteral("the description has no \"%1\"").arg(QString::fromUtf8(name));
    return feature;
}

bool FindFeatures(const QByteArray &names, const Camera &camera, std::vector<int> *pFeatures, QString *pError)
{
    for (const QByteArray &name : names.split(',')) {
        pFeatures->push_back(FindFeature(name, camera, pError));
        if (pFeatures->back() < 0)
            return false;
    }
    return true;
}

template <Gvcp::Status status, bool readsToo>
std::unique_ptr<Fault> MakeFeatureRefused(const QByteArray &value, const Camera &camera, QString *pError)
{
    std::vector<int> features;
    if (!FindFeatures(value, camera, &features, pError))
        return nullptr;
    return std::make_unique<FeatureRefused>(features, status, readsToo);
}

std::unique_ptr<Fault> MakeIgnored(const QByteArray &value, const Camera &camera, QString *pError)
{
    std::vector<int> features;
    return FindFeatures(value, camera, &features, pError) ? std::make_unique<FeatureIgnored>(features)
                                                          : nullptr;
}

template <typename Made>
std::unique_ptr<Fault> MakeCoupling(const QByteArray &value, const Camera &camera, QString *pError)
{
    const QList<QByteArray> names = value.split('=');
    if (names.size() != 2) {
        *pError = QStringLiteral("two features are wanted: CAUSE=EFFECT");
        return nullptr;
    }
    const int cause = FindFeature(names.at(0), camera, pError);
    const int effect = cause >= 0 ? FindFeature(names.at(1), camera, pError) : -1;
    return effect >= 0 ? std::make_unique<Made>(cause, effect) : nullptr;
}

} // namespace

std::vector<FaultKind> ValueFaultKinds()
{
    return {{"write-clamp", Scope::Commands, MakeSwitched<Clamping>},
            {"write-round", Scope::Commands, MakeSwitched<Rounding>},
            {"write-refused", Scope::Commands, MakeFeatureRefused<Gvcp::STATUS_INVALID_PARAMETER, false>},
            {"write-ignored", Scope::Commands, MakeIgnored},
            {"read-only", Scope::Commands, MakeFeatureRefused<Gvcp::STATUS_WRITE_PROTECT, false>},
            {"unavailable", Scope::Commands, MakeFeatureRefused<Gvcp::STATUS_ACCESS_DENIED, true>},
            {"write-resets", Scope::Commands, MakeCoupling<Resets>},
            {"write-moves-limit", Scope::Commands, MakeCoupling<LimitMoves>}};
}

} // namespace KxFarm
