#include "veldra/component/tsyparamconditionpad.h"

#include "tessaly/busycursor.h"
#include "tessaly/defaultpad.h"
#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/querycontainer.h"
#include "tessaly/tagstream.h"
#include "tessaly/uiservice.h"
#include "tessaly/variant.h"
#include "tessaly/zetpadsite.h"
#include "veldra/component/padlayout.h"
#include "veldra/component/padwizard.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/registration/classfactory.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/resources/stringtable.h"

#include <QDialog>
#include <QScopeGuard>

namespace veldra {

namespace {

struct PadSlot
{
    QStringView name;
    StringId description;
    int changeCode;
};

// Declaration order; "labels" is written by the captions and never reported.
constexpr PadSlot padSlots[] = {
    { u"BuildUI", StringId::SlotBuildUIDescription, 6 },
    { u"EditQuery", StringId::SlotEditQueryDescription, 8 },
    { u"labels", StringId::SlotLabelsDescription, 0 },
};
constexpr int labelsSlot = 2;

const QString classPart = QStringLiteral("ClassPart");
const QString variableElement = QStringLiteral("Variable");
const QString nameAttribute = QStringLiteral("name");
// The model slot whose changes the framework passes on to the pad's container.
const QString requestSlot = QStringLiteral("request");
const QString definitionSlot = QStringLiteral("SQLInfo");
// What a settings update refreshes: the captions and the children of the model's settings.
const QString refreshedSlots[] = { QStringLiteral("labels"), QStringLiteral("TopN"), QStringLiteral("OrderBy"),
                                   QStringLiteral("OrderByAscendant") };

// Loading the UI library lets hosts make the pad by its class identifier.
const bool padMakerSet = [] {
    ClassFactory::setPadMaker([]() -> tessaly::zetPrimitivePad * { return new TsyParamConditionPad; });
    return true;
}();

QString slotName(int slot)
{
    return padSlots[slot].name.toString();
}

} // namespace

TsyParamConditionPad::TsyParamConditionPad() : m_default(std::make_unique<tessaly::DefaultPad>()) { }

TsyParamConditionPad::~TsyParamConditionPad() = default;

int TsyParamConditionPad::triggerOf(const QString &name)
{
    for (int slot = 0; slot < TriggerCount; ++slot) {
        if (name == padSlots[slot].name)
            return slot;
    }
    return -1;
}

bool TsyParamConditionPad::zetPrimitivePad_setPad(const std::shared_ptr<tessaly::zetPadSite> &site)
{
    const bool result = m_default->zetPrimitivePad_setPad(site);
    m_site = site;
    return result;
}

bool TsyParamConditionPad::zetPrimitivePad_onInitialize(int kind)
{
    const bool result = m_default->zetPrimitivePad_onInitialize(kind);
    if (kind == NewComponent && m_site) {
        for (const PadSlot &slot : padSlots)
            m_site->declarePadSlot(slot.name.toString(), text(slot.description));
        bool watching = false;
        m_site->watchModelSlot(requestSlot, &watching);
    }
    return result;
}

bool TsyParamConditionPad::zetPrimitivePad_onCleanup()
{
    const bool result = m_default->zetPrimitivePad_onCleanup();
    m_wizardForm.reset();
    m_proxy.reset();
    return result;
}

bool TsyParamConditionPad::zetPrimitivePad_onCopy(tessaly::zetPrimitivePad &source)
{
    // The pad keeps nothing of its own worth copying.
    return m_default->zetPrimitivePad_onCopy(source);
}

QVariant TsyParamConditionPad::zetPrimitivePad_onGetSlotValue(const QString &name)
{
    if (triggerOf(name) >= 0)
        return false;
    if (name == padSlots[labelsSlot].name)
        return QString();
    return m_default->zetPrimitivePad_onGetSlotValue(name);
}

bool TsyParamConditionPad::zetPrimitivePad_onSetSlotValue(const QString &name, const QVariant &value)
{
    const int trigger = triggerOf(name);
    if (trigger >= 0) {
        // The flag is cleared after every write of the slot, the ignored nested ones included.
        const auto clearFlag = qScopeGuard([this, trigger] { m_running[trigger] = false; });
        if (!m_running[trigger]) {
            m_running[trigger] = true;
            runTrigger(Trigger(trigger));
        }
        return true;
    }
    if (name == padSlots[labelsSlot].name)
        return true; // the captions write it; it keeps nothing
    return m_default->zetPrimitivePad_onSetSlotValue(name, value);
}

void TsyParamConditionPad::runTrigger(Trigger trigger)
{
    if (trigger == BuildUI)
        buildUi();
    else
        editQuery();
    if (m_site) {
        m_site->reportSlotChanged(slotName(trigger));
        m_site->reportChangeCode(padSlots[trigger].changeCode);
    }
}

bool TsyParamConditionPad::zetPrimitivePad_onSave(tessaly::TagStream &stream)
{
    if (!m_default->zetPrimitivePad_onSave(stream))
        return false;
    stream.WriteTag(classPart);
    stream.WriteEndTag();
    return true;
}

bool TsyParamConditionPad::zetPrimitivePad_onLoad(tessaly::TagStream &stream)
{
    if (!m_default->zetPrimitivePad_onLoad(stream))
        return false;
    if (stream.CurrentTag() != classPart)
        return true;
    // Older pads saved variables of their own; they mean nothing now.
    while (stream.ReadTag() == variableElement) {
        stream.ReadAttribute(nameAttribute);
        stream.ReadTag(); // enters the variable, so the end tag closes it and not the class part
        stream.ReadEndTag();
    }
    stream.ReadEndTag();
    return true;
}

bool TsyParamConditionPad::zetPrimitivePad_postOperation(const tessaly::PadOperation &operation)
{
    const bool result = m_default->zetPrimitivePad_postOperation(operation);
    if (m_site && operation.target == m_site.get() && (operation.code & tessaly::PadOperation::PropertyOperation)
        && operation.parameters) {
        QVariant code;
        if (operation.parameters->lookup(QStringLiteral("PROPERTYCODE"), &code)) {
            try {
                m_propertyCode = tessaly::variant::toLong(code);
            } catch (const tessaly::Error &) {
                m_propertyCode = 0; // nothing depends on it
            }
        }
    }
    return result;
}

bool TsyParamConditionPad::zetPrimitivePad_onUpdateView(int kind)
{
    const bool result = m_default->zetPrimitivePad_onUpdateView(kind);
    if (kind == SettingsChanged && m_site) {
        for (const QString &slot : refreshedSlots)
            m_site->refreshChildPads(slot);
    }
    return result;
}

QString TsyParamConditionPad::zetPrimitivePad_returnClassName() const
{
    return QStringLiteral("TsyParamConditionPad");
}

QString TsyParamConditionPad::zetPrimitivePad_returnDisplayName() const
{
    return text(StringId::ComponentDisplayName);
}

QString TsyParamConditionPad::zetPrimitivePad_returnDescription() const
{
    return text(StringId::ComponentDescription);
}

QString TsyParamConditionPad::zetPrimitivePad_returnModelCLSID() const
{
    return ClsidLookup::lookup(ClsidLookup::progId(QStringLiteral(".TsyParamConditionModel")));
}

QString TsyParamConditionPad::zetPrimitivePad_returnPadCLSID() const
{
    return ClsidLookup::lookup(ClsidLookup::progId(QStringLiteral(".TsyParamConditionPad")));
}

void TsyParamConditionPad::buildUi()
{
    if (!m_site)
        return;
    QVariant value;
    if (!m_site->readModelSlot(definitionSlot, &value))
        return;
    const auto definition = tessaly::objectCast<SQLInfo>(tessaly::variant::heldObject(value));
    if (!definition)
        return;
    m_site->removeChildPads();
    for (const PadLayout::Row &row : PadLayout::rows(*definition)) {
        for (const PadLayout::Child &plan : row) {
            if (!buildChild(plan))
                break; // the rest of the row would make no sense without it
        }
    }
}

bool TsyParamConditionPad::buildChild(const PadLayout::Child &plan)
{
    tessaly::zetChildPad *child = nullptr;
    for (const QString &progId : plan.progIds) {
        if ((child = m_site->createChildPad(progId)))
            break;
    }
    if (!child)
        return false;
    try {
        child->setName(plan.name);
        if (!plan.accessibleName.isEmpty())
            child->setAccessibleCaption(plan.accessibleName);
        child->setSize(plan.width, plan.height);
        for (const auto &[property, setting] : plan.settings)
            child->setProperty(property, setting);
        if (!plan.property.isEmpty())
            child->connectProperty(plan.property, plan.owner, plan.slot);
        for (const auto &[property, setting] : plan.afterConnecting)
            child->setProperty(property, setting);
    } catch (const tessaly::Error &) {
        return false; // a child of another make that lacks a setting
    }
    return true;
}

std::shared_ptr<tessaly::ServiceProxy> TsyParamConditionPad::findDataService() const
{
    for (tessaly::zetPadSite *site = m_site ? m_site->parentPad() : nullptr; site; site = site->parentPad()) {
        if (tessaly::QueryContainer *container = site->queryContainer()) {
            if (auto proxy = container->dataServiceProxy())
                return proxy;
        }
    }
    return nullptr;
}

void TsyParamConditionPad::editQuery()
{
    if (!m_site)
        return;
    if (!m_proxy)
        m_proxy = findDataService();
    if (!m_proxy) {
        tessaly::UiService::instance().message(text(StringId::ServiceConnectionFailedMessage),
                                               text(StringId::ServiceConnectionFailedTitle),
                                               tessaly::UiService::Buttons::Ok);
        return;
    }
    QVariant value;
    if (!m_site->readModelSlot(definitionSlot, &value))
        return;
    const tessaly::BusyCursor busy;
    openWizard(m_site->componentModel(), m_proxy, tessaly::variant::heldObject(value));
}

bool TsyParamConditionPad::openWizard(const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                                      const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                                      const std::shared_ptr<tessaly::zetVariable> &definition)
{
    if (m_launcher)
        return m_launcher(model, proxy, definition);
    return startPadWizard(m_wizardForm, model, proxy, definition);
}

} // namespace veldra
