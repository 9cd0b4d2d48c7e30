// A settings file with these bytes, as a crash, an editor or a careless hand may have left it. The
// first line is a value that is then set.

#include "fuzz/property.h"
#include "fuzz/scratch_folder.h"
#include "platform/linux/files/json_settings.h"

#include <QJsonDocument>

using namespace corvane::platform;
using corvane::fuzz::require;

namespace {

const QString key = QStringLiteral("corvane.rpc");
const QString flag = QStringLiteral("corvane.displayUSD");

QJsonObject object(const std::optional<QByteArray> &text)
{
    return QJsonDocument::fromJson(text.value_or(QByteArray())).object();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    corvane::fuzz::Input input(data, size);
    const QString value = input.takeText();
    const QByteArray before = input.rest();
    if (corvane::fuzz::hasByteOrderMark(before)) {
        return -1;
    }
    const bool isObject = QJsonDocument::fromJson(before).isObject();

    const corvane::fuzz::ScratchFolder folder;
    folder.write("settings.json", before);
    JsonSettings settings(folder.path("settings.json"));
    // Nothing that was there is lost.
    require(folder.contents(isObject ? "settings.json" : "settings.json.damaged") == before);
    require(folder.contents("settings.json").has_value() == isObject);

    settings.setString(key, value);
    settings.setBoolean(flag, false);
    require(settings.string(key) == value && settings.boolean(flag) == false);
    const JsonSettings again(folder.path("settings.json"));
    require(again.string(key) == value && again.boolean(flag) == false);
    require(!again.boolean(key) && !again.string(flag));
    require(isObject == !folder.contents("settings.json.damaged").has_value());

    QJsonObject expected = object(before);
    expected.insert(key, QJsonValue(value));
    expected.insert(flag, false);
    require(object(folder.contents("settings.json")) == expected);
    return 0;
}
