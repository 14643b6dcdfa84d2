#ifndef TESTS_FAULTFIXTURE_H
#define TESTS_FAULTFIXTURE_H

#include "pureclient.h"

/// A camera of its own for every test, and short words for what faults are tested with.
class FaultFixture
{
protected:
    void Reset()
    {
        m_pCamera = MakeBuiltinCamera();
        m_pClient = std::make_unique<PureClient>(m_pCamera.get());
    }

    /// Empty, or why the key was refused.
    QByteArray Set(const QByteArray &key, const QByteArray &value)
    {
        QString error;
        return m_pCamera->Set(key, value, &error) ? QByteArray() : error.toUtf8();
    }
    int Feature(const char *name) const { return m_pCamera->Device().Model().nodes.Find(name); }
    KxFarm::Gvcp::Status SetFeature(const char *name, std::int64_t value)
    {
        KxFarm::NodeEvaluator evaluator(m_pCamera->Device().Model().nodes, m_pClient.get());
        evaluator.SetInteger(Feature(name), value);
        return m_pClient->LastStatus();
    }
    std::int64_t Value(const char *name) ///< -1 when it cannot be read
    {
        KxFarm::NodeEvaluator evaluator(m_pCamera->Device().Model().nodes, m_pClient.get());
        return evaluator.Integer(Feature(name)).value_or(-1);
    }

    std::unique_ptr<KxFarm::SimulatedCamera> m_pCamera;
    std::unique_ptr<PureClient> m_pClient;
};

#endif
