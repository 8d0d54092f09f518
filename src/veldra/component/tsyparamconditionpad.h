#pragma once

#include "tessaly/zetprimitivepad.h"
#include "veldra/component/padlayout.h"
#include "veldra/veldraui_export.h"

#include <functional>
#include <memory>

class QDialog;

namespace tessaly {
class DefaultPad;
class ServiceProxy;
class zetPrimitiveModel;
class zetVariable;
} // namespace tessaly

namespace veldra {

// The visual side of the parametrised-condition component. It names the component, offers the
// triggers "BuildUI" (build the run-time face from the definition) and "EditQuery" (open the
// query wizard) and the slot "labels" its captions follow, and hands everything else to the
// framework's default pad.
class VELDRAUI_EXPORT TsyParamConditionPad final : public tessaly::zetPrimitivePad
{
public:
    // Opens the wizard on the component; false when it was not shown.
    using WizardLauncher = std::function<bool(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                                              const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                                              const std::shared_ptr<tessaly::zetVariable> &definition)>;

    TsyParamConditionPad();
    ~TsyParamConditionPad() override;

    bool zetPrimitivePad_setPad(const std::shared_ptr<tessaly::zetPadSite> &site) override;
    bool zetPrimitivePad_onInitialize(int kind) override;
    bool zetPrimitivePad_onCleanup() override;
    bool zetPrimitivePad_onCopy(tessaly::zetPrimitivePad &source) override;
    QVariant zetPrimitivePad_onGetSlotValue(const QString &name) override;
    bool zetPrimitivePad_onSetSlotValue(const QString &name, const QVariant &value) override;
    bool zetPrimitivePad_onSave(tessaly::TagStream &stream) override;
    bool zetPrimitivePad_onLoad(tessaly::TagStream &stream) override;
    bool zetPrimitivePad_postOperation(const tessaly::PadOperation &operation) override;
    bool zetPrimitivePad_onUpdateView(int kind) override;

    QString zetPrimitivePad_returnClassName() const override;
    QString zetPrimitivePad_returnDisplayName() const override;
    QString zetPrimitivePad_returnDescription() const override;
    QString zetPrimitivePad_returnModelCLSID() const override;
    QString zetPrimitivePad_returnPadCLSID() const override;

    // Replaces the wizard (tests, hosts with a wizard of their own); an empty one restores it.
    void setWizardLauncher(WizardLauncher launcher) { m_launcher = std::move(launcher); }
    // The data service found by the last "EditQuery", kept until cleanup.
    const std::shared_ptr<tessaly::ServiceProxy> &dataServiceProxy() const { return m_proxy; }
    // The value of "PROPERTYCODE" in the last property operation on the pad itself.
    qint32 lastPropertyCode() const { return m_propertyCode; }

private:
    enum Trigger { BuildUI, EditQuery, TriggerCount };

    static int triggerOf(const QString &name);
    void runTrigger(Trigger trigger);
    void buildUi();
    bool buildChild(const PadLayout::Child &plan);
    void editQuery();
    std::shared_ptr<tessaly::ServiceProxy> findDataService() const;
    bool openWizard(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                    const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                    const std::shared_ptr<tessaly::zetVariable> &definition);

    std::unique_ptr<tessaly::DefaultPad> m_default;
    std::shared_ptr<tessaly::zetPadSite> m_site;
    std::unique_ptr<QDialog> m_wizardForm; // made on first use, kept until cleanup
    std::shared_ptr<tessaly::ServiceProxy> m_proxy;
    WizardLauncher m_launcher;
    qint32 m_propertyCode = 0;
    // Reporting a trigger makes the framework write it again; those writes are ignored.
    bool m_running[TriggerCount] = {};
};

} // namespace veldra
