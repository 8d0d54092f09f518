#pragma once

#include "tessaly/request.h"
#include "tessaly/zetprimitivemodel.h"
#include "veldra/veldra_export.h"

#include <array>

namespace tessaly {
class DefaultModel;
class NameMap;
} // namespace tessaly

namespace veldra {

class SQLInfo;
struct RequestInputs;

// The data side of the parametrised-condition component. It holds the query definition and the
// current parameter values in slots, declares one slot per parameter reference of the
// condition, and republishes the data-service request in "request" whenever an input changes.
class VELDRA_EXPORT TsyParamConditionModel final : public tessaly::zetPrimitiveModel
{
public:
    TsyParamConditionModel();
    ~TsyParamConditionModel() override;

    bool zetPrimitiveModel_SetModel(const std::shared_ptr<tessaly::zetModelSite> &site) override;
    bool zetPrimitiveModel_onInitialize(int kind) override;
    bool zetPrimitiveModel_onCleanup() override;
    bool zetPrimitiveModel_onCopy(tessaly::zetPrimitiveModel &source) override;
    QVariant zetPrimitiveModel_onGetSlotValue(const QString &name) override;
    bool zetPrimitiveModel_onSetSlotValue(const QString &name, const QVariant &value) override;
    bool zetPrimitiveModel_onSave(tessaly::TagStream &stream) override;
    bool zetPrimitiveModel_onLoad(tessaly::TagStream &stream) override;

    // The run-time request's target block and table list.
    QString createTarget() const;
    QString getTableNames() const;

    // Why the current state yields no request; empty when it yields one.
    QString missingRequestPiece() const;

private:
    enum Slot { Selection, Request, Definition, Parameters, UpdateRequest, TopN, OrderBy, OrderByAscendant, SlotCount };

    static int fixedSlot(const QString &name);
    void writeFixedSlot(Slot slot, const QVariant &value);
    bool writeParameterSlot(const QString &name, const QVariant &value);
    void rebuildRequest();
    void refreshParameterSlots();
    void declareReferencedParameterSlots(bool withValues);
    void setDefaults();
    RequestInputs requestInputs() const;
    void reportSlot(Slot slot);
    void reportCode(int code);

    std::unique_ptr<tessaly::DefaultModel> m_default;
    std::shared_ptr<tessaly::zetModelSite> m_site;

    QString m_selection;
    tessaly::RequestRef m_request;
    std::shared_ptr<SQLInfo> m_definition;
    std::shared_ptr<tessaly::NameMap> m_parameters;
    bool m_updateRequest = false;
    qint32 m_topN = 0;
    QString m_orderBy;
    bool m_orderByAscendant = true;

    // Reporting a change makes the framework write the same slot again; those writes are ignored.
    std::array<bool, SlotCount> m_writing {};
    bool m_writingParameter = false;
};

} // namespace veldra
