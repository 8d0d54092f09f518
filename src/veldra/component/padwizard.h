#pragma once

#include <memory>

class QDialog;

namespace tessaly {
class ServiceProxy;
class zetPrimitiveModel;
class zetVariable;
} // namespace tessaly

namespace veldra {

// Opens the query wizard on a component, making the form in *form on first use. False when the
// wizard was not shown.
bool startPadWizard(std::unique_ptr<QDialog> &form, const std::shared_ptr<tessaly::zetPrimitiveModel> &model,
                    const std::shared_ptr<tessaly::ServiceProxy> &proxy,
                    const std::shared_ptr<tessaly::zetVariable> &definition);

} // namespace veldra
