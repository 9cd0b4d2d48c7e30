// The module gives QML typed access to the wallet.

#include "tests/core/wallet_fixture.h"

#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>

using namespace corvane::tests;
using namespace Qt::StringLiterals;

namespace {

TEST_F(WalletTest, CanBeReadAndWrittenFromQml)
{
    int argumentCount = 1;
    char name[] = "core_tests";
    char *arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    launchAndSettle();

    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_s);
    QQmlComponent component(&engine);
    component.setData(R"(
        import QML
        import Corvane.Core
        QtObject {
            required property WalletModel model
            property string label: model.solLabel + "|" + model.rpcSourceLabel
            property bool onDevnet: model.network === SolNetwork.Devnet
            function choose() {
                model.network = SolNetwork.Devnet;
                model.address = "1".repeat(32);
                model.refresh();
            }
        }
    )",
                      QUrl());
    ASSERT_TRUE(component.isReady()) << component.errorString().toStdString();
    const std::unique_ptr<QObject> view(
        component.createWithInitialProperties({{u"model"_s, QVariant::fromValue(model.get())}}));
    ASSERT_TRUE(view) << component.errorString().toStdString();
    EXPECT_EQ(view->property("label").toString(), u"—|PUBLIC RPC (RATE-LIMITED)"_s);
    EXPECT_FALSE(view->property("onDevnet").toBool());

    QMetaObject::invokeMethod(view.get(), "choose");
    queue.drain();
    EXPECT_TRUE(view->property("onDevnet").toBool());
    EXPECT_TRUE(model->hasValidAddress());
    EXPECT_EQ(view->property("label").toString(), u"1.5000 SOL|PUBLIC RPC (RATE-LIMITED)"_s);
}

} // namespace
