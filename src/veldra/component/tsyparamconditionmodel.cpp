#include "veldra/component/tsyparamconditionmodel.h"

#include "tessaly/defaultmodel.h"
#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/tagstream.h"
#include "tessaly/variant.h"
#include "tessaly/zetmodelsite.h"
#include "veldra/component/parameterreference.h"
#include "veldra/component/requestbuilder.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/recordio.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/resources/stringtable.h"

#include <QScopeGuard>
#include <QSet>

namespace veldra {

namespace {

struct FixedSlot
{
    QStringView name;
    StringId description;
    int changeCode;
};

// Declaration order. The descriptions of TopN, OrderBy and OrderByAscendant are shifted by one
// key against their meaning; hosts show them as they have always been.
constexpr FixedSlot fixedSlots[] = {
    { u"selection", StringId::SlotSelectionDescription, 1 },
    { u"request", StringId::SlotRequestDescription, 2 },
    { u"SQLInfo", StringId::SlotSQLInfoDescription, 3 },
    { u"parameters", StringId::SlotParametersDescription, 4 },
    { u"UpdateRequest", StringId::SlotUpdateRequestDescription, 5 },
    { u"TopN", StringId::SlotEditQueryDescription, 8 },
    { u"OrderBy", StringId::SlotOrderByDescription, 9 },
    { u"OrderByAscendant", StringId::SlotOrderByAscendantDescription, 10 },
};

// Built once: slot names are compared and reported on every write.
const QString &slotName(int slot)
{
    static const auto names = [] {
        std::array<QString, std::size(fixedSlots)> result;
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = fixedSlots[i].name.toString();
        return result;
    }();
    return names[std::size_t(slot)];
}

const QString classPart = QStringLiteral("ClassPart");
const QString variableElement = QStringLiteral("Variable");
const QString nameAttribute = QStringLiteral("name");

[[noreturn]] void refuse(int slot, const QString &why)
{
    throw tessaly::Error(tessaly::ErrorNumber::TypeMismatch, QStringLiteral("slot %1: %2").arg(slotName(slot), why));
}

template<typename T>
std::shared_ptr<T> objectInSlot(int slot, const QVariant &value, const char *what)
{
    const auto object = tessaly::objectCast<T>(tessaly::variant::heldObject(value));
    if (!object)
        refuse(slot, QStringLiteral("the value holds no %1").arg(QLatin1String(what)));
    return object;
}

} // namespace

TsyParamConditionModel::TsyParamConditionModel() : m_default(std::make_unique<tessaly::DefaultModel>()) { }

TsyParamConditionModel::~TsyParamConditionModel() = default;

int TsyParamConditionModel::fixedSlot(const QString &name)
{
    for (int slot = 0; slot < SlotCount; ++slot) {
        if (name.size() == fixedSlots[slot].name.size() && name == fixedSlots[slot].name)
            return slot;
    }
    return -1;
}

bool TsyParamConditionModel::zetPrimitiveModel_SetModel(const std::shared_ptr<tessaly::zetModelSite> &site)
{
    const bool result = m_default->zetPrimitiveModel_SetModel(site);
    m_site = site;
    return result;
}

void TsyParamConditionModel::setDefaults()
{
    m_selection.clear();
    m_request.reset();
    m_definition = std::make_shared<SQLInfo>();
    m_parameters = std::make_shared<tessaly::NameMap>();
    m_updateRequest = false;
    m_topN = 0;
    m_orderBy.clear();
    m_orderByAscendant = true;
}

bool TsyParamConditionModel::zetPrimitiveModel_onInitialize(int kind)
{
    const bool result = m_default->zetPrimitiveModel_onInitialize(kind);
    if (m_site) {
        for (int slot = 0; slot < SlotCount; ++slot)
            m_site->declareSlot(slotName(slot), text(fixedSlots[slot].description));
    }
    if (kind == NewComponent || kind == Reset)
        setDefaults();
    m_writing.fill(false);
    m_writingParameter = false;
    return result;
}

bool TsyParamConditionModel::zetPrimitiveModel_onCleanup()
{
    const bool result = m_default->zetPrimitiveModel_onCleanup();
    m_parameters.reset();
    m_request.reset();
    m_definition.reset();
    return result;
}

bool TsyParamConditionModel::zetPrimitiveModel_onCopy(tessaly::zetPrimitiveModel &source)
{
    using namespace tessaly::variant;
    const bool result = m_default->zetPrimitiveModel_onCopy(source);
    auto read = [&source](int slot) { return source.zetPrimitiveModel_onGetSlotValue(slotName(slot)); };
    // Objects are shared with the source, not duplicated.
    m_selection = toText(read(Selection));
    m_request = read(Request).value<tessaly::RequestRef>();
    m_definition = tessaly::objectCast<SQLInfo>(heldObject(read(Definition)));
    m_parameters = tessaly::objectCast<tessaly::NameMap>(heldObject(read(Parameters)));
    m_updateRequest = toBoolean(read(UpdateRequest));
    m_topN = toLong(read(TopN));
    m_orderBy = toText(read(OrderBy));
    m_orderByAscendant = toBoolean(read(OrderByAscendant));
    return result;
}

QVariant TsyParamConditionModel::zetPrimitiveModel_onGetSlotValue(const QString &name)
{
    switch (fixedSlot(name)) {
    case Selection:
        return m_selection;
    case Request:
        return QVariant::fromValue(m_request);
    case Definition:
        return tessaly::variant::holding(m_definition);
    case Parameters:
        return tessaly::variant::holding(m_parameters);
    case UpdateRequest:
        return m_updateRequest;
    case TopN:
        return m_topN;
    case OrderBy:
        return m_orderBy;
    case OrderByAscendant:
        return m_orderByAscendant;
    default:
        break;
    }
    QVariant value;
    if (m_parameters && m_parameters->lookup(name, &value))
        return value;
    return m_default->zetPrimitiveModel_onGetSlotValue(name);
}

bool TsyParamConditionModel::zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value)
{
    const int slot = fixedSlot(name);
    if (slot < 0)
        return writeParameterSlot(name, value);
    // The flag is cleared at the end of every write of the slot, the ignored nested ones included.
    const auto clearFlag = qScopeGuard([this, slot] { m_writing[slot] = false; });
    if (m_writing[slot])
        return true;
    m_writing[slot] = true;
    writeFixedSlot(Slot(slot), value);
    return true;
}

void TsyParamConditionModel::writeFixedSlot(Slot slot, const QVariant &value)
{
    using namespace tessaly::variant;
    switch (slot) {
    case Selection:
        m_selection = toText(value);
        reportSlot(slot);
        reportCode(fixedSlots[slot].changeCode);
        rebuildRequest();
        break;
    case Request:
        if (value.metaType() == QMetaType::fromType<tessaly::RequestRef>())
            m_request = value.value<tessaly::RequestRef>();
        else if (value.metaType() == QMetaType::fromType<QString>())
            m_request = tessaly::Request::load(value.toString());
        else if (!value.isValid())
            m_request.reset();
        else
            refuse(slot, QStringLiteral("the value is no request"));
        reportSlot(slot);
        reportCode(fixedSlots[slot].changeCode);
        break;
    case Definition:
        m_definition = objectInSlot<SQLInfo>(slot, value, "query definition");
        reportSlot(slot);
        reportCode(fixedSlots[slot].changeCode);
        refreshParameterSlots();
        rebuildRequest();
        break;
    case Parameters:
        m_parameters = objectInSlot<tessaly::NameMap>(slot, value, "parameter-value collection");
        reportSlot(slot);
        reportCode(fixedSlots[slot].changeCode);
        rebuildRequest();
        break;
    case UpdateRequest:
        rebuildRequest();
        reportCode(fixedSlots[slot].changeCode);
        reportSlot(slot);
        break;
    case TopN:
    case OrderBy:
    case OrderByAscendant:
        if (slot == TopN)
            m_topN = toLong(value);
        else if (slot == OrderBy)
            m_orderBy = toText(value);
        else
            m_orderByAscendant = toBoolean(value);
        rebuildRequest();
        reportCode(fixedSlots[slot].changeCode);
        reportSlot(slot);
        break;
    case SlotCount:
        break;
    }
}

bool TsyParamConditionModel::writeParameterSlot(const QString &name, const QVariant &value)
{
    if (!m_parameters || !m_parameters->contains(name) || m_writingParameter)
        return m_default->zetPrimitiveModel_onSetSlotValue(name, value);
    const QString text = tessaly::variant::toText(value);
    m_writingParameter = true;
    const auto clearFlag = qScopeGuard([this] { m_writingParameter = false; });
    m_parameters->setText(name, text);
    if (m_site)
        m_site->reportSlotChanged(name);
    reportCode(fixedSlots[Request].changeCode);
    rebuildRequest();
    return true;
}

RequestInputs TsyParamConditionModel::requestInputs() const
{
    return { m_definition.get(), m_selection, m_parameters.get(), m_topN, m_orderBy, m_orderByAscendant };
}

void TsyParamConditionModel::rebuildRequest()
{
    std::optional<QString> text;
    try {
        text = RequestBuilder(requestInputs()).build();
    } catch (const tessaly::Error &) {
        return; // the last good request stays published
    }
    if (!text)
        return;
    m_request = tessaly::Request::load(*text);
    m_writing[Request] = true;
    const auto clearFlag = qScopeGuard([this] { m_writing[Request] = false; });
    reportSlot(Request);
}

void TsyParamConditionModel::refreshParameterSlots()
{
    if (!m_parameters)
        m_parameters = std::make_shared<tessaly::NameMap>();
    if (m_site) {
        for (int i = 0; i < m_parameters->count(); ++i)
            m_site->removeSlot(m_parameters->key(i));
    }
    m_parameters->clear();
    declareReferencedParameterSlots(true);
}

void TsyParamConditionModel::declareReferencedParameterSlots(bool withValues)
{
    if (!m_site || !m_definition || !m_definition->parameters())
        return;
    const auto definitions = m_definition->parameters();
    QSet<QString> declared;
    parameterreference::scan(m_definition->condition(), [&](QStringView, QStringView reference) {
        const QString key = reference.toString();
        if (reference.size() == parameterreference::marker.size() || declared.contains(key)
            || !definitions->contains(key))
            return;
        declared.insert(key);
        const auto parameter = definitions->object<ParamInfo>(key);
        const bool accepted = m_site->declareParameterSlot(key, parameter ? parameter->title() : QString());
        if (accepted && withValues && m_parameters)
            m_parameters->setText(key, QString());
    });
}

bool TsyParamConditionModel::zetPrimitiveModel_onSave(tessaly::TagStream &stream)
{
    if (!m_default->zetPrimitiveModel_onSave(stream))
        return false;
    stream.WriteTag(classPart);
    for (int slot = 0; slot < SlotCount; ++slot) {
        stream.WriteTag(variableElement);
        stream.WriteAttribute(nameAttribute, slotName(slot));
        switch (Slot(slot)) {
        case Selection:
            stream.WriteValue(m_selection);
            break;
        case Request:
            if (m_request)
                stream.WriteValue(m_request->text());
            break;
        case Definition:
            stream.WriteValue(tessaly::ObjectRef(m_definition));
            break;
        case Parameters:
            stream.WriteValue(tessaly::ObjectRef(m_parameters));
            break;
        case UpdateRequest:
            stream.WriteValue(m_updateRequest);
            break;
        case TopN:
            stream.WriteValue(m_topN);
            break;
        case OrderBy:
            stream.WriteValue(m_orderBy);
            break;
        case OrderByAscendant:
            stream.WriteValue(m_orderByAscendant);
            break;
        case SlotCount:
            break;
        }
        stream.WriteEndTag();
    }
    stream.WriteEndTag();
    return true;
}

bool TsyParamConditionModel::zetPrimitiveModel_onLoad(tessaly::TagStream &stream)
{
    if (!m_default->zetPrimitiveModel_onLoad(stream))
        return false;
    if (stream.CurrentTag() != classPart)
        return true;
    while (stream.ReadTag() == variableElement) {
        switch (fixedSlot(stream.ReadAttribute(nameAttribute))) {
        case Selection:
            stream.ReadValue(m_selection);
            break;
        case Request: {
            QString text;
            stream.ReadValue(text);
            if (!text.isEmpty())
                m_request = tessaly::Request::load(text);
            break;
        }
        case Definition:
            recordio::readObject(stream, m_definition);
            declareReferencedParameterSlots(false);
            break;
        case Parameters:
            recordio::readObject(stream, m_parameters);
            break;
        case UpdateRequest:
            stream.ReadValue(m_updateRequest);
            break;
        case TopN:
            stream.ReadValue(m_topN);
            break;
        case OrderBy:
            stream.ReadValue(m_orderBy);
            break;
        case OrderByAscendant:
            stream.ReadValue(m_orderByAscendant);
            break;
        default:
            break; // not a slot of this model
        }
        stream.ReadEndTag();
    }
    stream.ReadEndTag();
    return true;
}

QString TsyParamConditionModel::createTarget() const
{
    return m_definition ? RequestBuilder(requestInputs()).targetBlock() : QString();
}

QString TsyParamConditionModel::getTableNames() const
{
    return m_definition ? m_definition->getTableNames() : QString();
}

QString TsyParamConditionModel::missingRequestPiece() const
{
    return RequestBuilder(requestInputs()).missingPiece();
}

void TsyParamConditionModel::reportSlot(Slot slot)
{
    if (m_site)
        m_site->reportSlotChanged(slotName(slot));
}

void TsyParamConditionModel::reportCode(int code)
{
    if (m_site)
        m_site->reportChangeCode(code);
}

} // namespace veldra
