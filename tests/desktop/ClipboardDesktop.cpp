#include "desktop/ClipboardDesktop.h"

namespace quillet {

using namespace Qt::StringLiterals;

void ClipboardDesktop::letItBeNoticed() {
    const auto before = quillet.texts();
    eventually([&] { return quillet.texts() != before; }, std::chrono::milliseconds(700));
}

std::vector<std::string> ClipboardDesktop::historyAfterMarker() {
    letItBeNoticed();
    static int markers = 0;
    const std::string marker = "marker " + std::to_string(++markers);
    FakeOwner owner(display());
    owner.own(textOffers(QByteArray::fromStdString(marker)));
    auto history = historyOnceNewestIs(marker, std::chrono::seconds(15));
    if (history.empty() || history.front() != marker)
        ADD_FAILURE() << "a later copy was not recorded";
    std::erase_if(history, [](const std::string& text) { return text.starts_with("marker "); });
    return history;
}

std::vector<std::string> ClipboardDesktop::historyOnceNewestIs(const std::string& text,
                                                               std::chrono::milliseconds deadline) {
    std::vector<std::string> history;
    eventually(
        [&] {
            history = quillet.texts();
            return !history.empty() && history.front() == text;
        },
        deadline);
    return history;
}

void ClipboardDesktop::copyBack(int position, const QStringList& options) {
    const auto result =
        quillet.verb(QStringList{u"clip"_s, u"copy"_s, QString::number(position)} + options);
    ASSERT_EQ(result.exitCode, 0) << result.error.constData();
}

std::vector<Offer> textOffers(const QByteArray& text) {
    return {{.target = "UTF8_STRING", .bytes = text},
            {.target = "text/plain;charset=utf-8", .bytes = text},
            {.target = "STRING", .bytes = QString::fromUtf8(text).toLatin1()}};
}

} // namespace quillet
