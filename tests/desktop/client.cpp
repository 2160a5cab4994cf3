// A Qt program as the other side of the clipboard:
//   client set text|image   the content from standard input; owns it until it is ended
//   client get text|image   the content to standard output; an image as PNG
//   client edit             a text editor; its state as a line of JSON at every change
#include <cstdio>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {

int edit(int argc, char** argv) {
    const QApplication application(argc, argv);
    QPlainTextEdit editor;
    editor.setWindowTitle(u"Editor"_s);
    const auto report = [&editor] {
        const QJsonObject state{{u"text"_s, editor.toPlainText()},
                                {u"window"_s, static_cast<qint64>(editor.winId())},
                                {u"active"_s, editor.isActiveWindow()}};
        std::puts(QJsonDocument(state).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    };
    QObject::connect(&editor, &QPlainTextEdit::textChanged, report);
    QObject::connect(&application, &QGuiApplication::focusWindowChanged, report);
    editor.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    const QByteArrayList words(argv + 1, argv + argc);
    if (words == QByteArrayList{"edit"})
        return edit(argc, argv);
    if (words.size() != 2)
        return 2;
    const QGuiApplication application(argc, argv);
    QClipboard& clipboard = *QGuiApplication::clipboard();
    const bool isImage = words[1] == "image";
    QFile standard;
    if (words[0] == "set") {
        standard.open(stdin, QIODevice::ReadOnly);
        const QByteArray content = standard.readAll();
        if (isImage)
            clipboard.setImage(QImage::fromData(content));
        else
            clipboard.setText(QString::fromUtf8(content));
        return QGuiApplication::exec();
    }
    standard.open(stdout, QIODevice::WriteOnly);
    if (isImage)
        clipboard.image().save(&standard, "PNG");
    else
        standard.write(clipboard.text().toUtf8());
    return 0;
}
