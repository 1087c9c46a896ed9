// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDialog.h"

#include "PathText.h"
#include "Process.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <QTreeView>

#include <functional>
#include <gtest/gtest.h>
#include <set>

namespace lantern {
namespace {

template <typename Condition>
bool Await(Condition condition)
{
    return test::Eventually(
        [&] {
            QCoreApplication::processEvents();
            return condition();
        },
        std::chrono::seconds(10));
}

// What a user sees of the dialog and does with it.
class Hands {
public:
    explicit Hands(QFileDialog& dialog) : m_dialog(dialog) {}

    void Type(const QString& text)
    {
        auto& line = *m_dialog.findChild<QLineEdit*>();
        line.setText(text);
    }
    QString Typed() const { return m_dialog.findChild<QLineEdit*>()->text(); }

    void Press(QDialogButtonBox::StandardButton button)
    {
        m_dialog.findChild<QDialogButtonBox*>()->button(button)->click();
    }
    void Open() { Press(QDialogButtonBox::Open); }

    // By its line in the list, once that is there.
    void Choose(const QString& name)
    {
        ASSERT_TRUE(Await([&] { return Names().contains(name); }));
        auto& list = *m_dialog.findChild<QTreeView*>();
        list.setFocus();
        for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row) {
            const QModelIndex index = list.model()->index(row, 0, list.rootIndex());
            if (index.data().toString() == name)
                list.setCurrentIndex(index);
        }
        EXPECT_EQ(Typed(), name);
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QApplication::sendEvent(&list, &press);
    }

    void ChooseFilter(int row)
    {
        auto& filters = *m_dialog.findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        filters.setCurrentIndex(row);
        Q_EMIT filters.activated(row);
    }

    std::set<QString> Names() const
    {
        const auto& list = *m_dialog.findChild<QListView*>(QStringLiteral("listView"));
        std::set<QString> names;
        for (int row = 0; row < list.model()->rowCount(list.rootIndex()); ++row)
            names.insert(list.model()->index(row, 0, list.rootIndex()).data().toString());
        return names;
    }
    bool AwaitNames(const std::set<QString>& names) const
    {
        return Await([&] { return Names() == names; });
    }

    // The text of the message that stands above the dialog, which is then read.
    QString TakeMessage() const
    {
        QPointer<QMessageBox> box;
        EXPECT_TRUE(Await([&] {
            box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            return box != nullptr;
        }));
        if (!box)
            return {};
        const QString text = box->text();
        box->close();
        return text;
    }

private:
    QFileDialog& m_dialog;
};

class FileDialogTest : public ::testing::Test {
protected:
    FileDialogTest()
    {
        for (const char* name : {"a.cdg", "Song.MP3", "notes.txt", "plain"})
            test::WriteFile(folder / name, "");
        std::filesystem::create_directory(folder / "inner");
        test::WriteFile(folder / "inner/b.cdg", "");
        request.initialFolder = In("");
        request.fileMustExist = true;
    }

    QString In(const std::string& name) const
    {
        return TextFromNative((folder / name).native().c_str());
    }

    // Shows the dialog and acts on it. A dialog that still stands then is closed.
    FileDialogAnswer Show(const std::function<void(Hands&)>& act)
    {
        QTimer::singleShot(0, qApp, [&] {
            QPointer<QFileDialog> dialog;
            ASSERT_TRUE(Await([&] {
                dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
                return dialog != nullptr;
            }));
            EXPECT_EQ(dialog->windowTitle(), request.title);
            Hands hands(*dialog);
            act(hands);
            if (dialog && dialog->isVisible()) {
                wasLeftOpen = true;
                dialog->reject();
            }
        });
        return RunFileDialog(request);
    }

    const test::ScratchFolder folder;
    FileDialogRequest request = {.title = QStringLiteral("Select a Karaoke File")};
    bool wasLeftOpen = false;
};

std::vector<QString> One(const QString& path)
{
    return {path};
}

TEST_F(FileDialogTest, ATypedNameIsAFileOfTheFolder)
{
    const FileDialogAnswer answer = Show([](Hands& hands) {
        hands.Type(QStringLiteral("a.cdg"));
        hands.Open();
    });
    EXPECT_EQ(answer.paths, One(In("a.cdg")));
    EXPECT_EQ(answer.errorCode, 0);
}

TEST_F(FileDialogTest, ATypedPathMayLeadAnywhere)
{
    request.initialFolder = QStringLiteral("/");
    EXPECT_EQ(Show([this](Hands& hands) {
                  hands.Type(In("inner/b.cdg"));
                  hands.Open();
              }).paths,
              One(In("inner/b.cdg")));
}

TEST_F(FileDialogTest, ATypedNameIsFoundInAnyLetterCase)
{
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("SONG.mp3"));
                  hands.Open();
              }).paths,
              One(In("Song.MP3")));
}

TEST_F(FileDialogTest, ATypedNameWithoutAnExtensionGetsTheDefault)
{
    request.defaultExtension = QStringLiteral("cdg");
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("a"));
                  hands.Open();
              }).paths,
              One(In("a.cdg")));
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("plain")); // which is there as it is
                  hands.Open();
              }).paths,
              One(In("plain")));
}

TEST_F(FileDialogTest, ANameWithQuotationMarksIsTakenAsItStands)
{
    request.defaultExtension = QStringLiteral("cdg");
    for (const std::string name : {"a\"b\"c.cdg", "\"b.cdg", " 1\" 'tape' .cdg"}) {
        test::WriteFile(folder / name, "");
        const QString path = In(name);
        const auto typed = [](const QString& text) {
            return [text](Hands& hands) {
                hands.Type(text);
                hands.Open();
            };
        };
        const QString shortName = QString::fromStdString(name);
        EXPECT_EQ(Show(typed(shortName)).paths, One(path)) << name;
        EXPECT_EQ(Show(typed(shortName.chopped(4))).paths, One(path)) << name;
        EXPECT_EQ(Show(typed(shortName.toUpper())).paths, One(path)) << name;
        EXPECT_EQ(Show(typed(path)).paths, One(path)) << name;
        EXPECT_EQ(Show([&](Hands& hands) { hands.Choose(shortName); }).paths, One(path)) << name;
        request.initialPath = path;
        EXPECT_EQ(Show([&](Hands& hands) { hands.Open(); }).paths, One(path)) << name;
        request.initialPath.clear();
        std::filesystem::remove(folder / name);
    }
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("\"a.cdg\""));
                  hands.Open();
              }).paths,
              One(In("a.cdg")))
        << "where no file has that name, they stand around one";
}

TEST_F(FileDialogTest, ATypedFolderIsEntered)
{
    request.defaultExtension = QStringLiteral("cdg");
    const FileDialogAnswer answer = Show([](Hands& hands) {
        hands.Type(QStringLiteral("Inner"));
        hands.Open();
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("b.cdg")}));
        hands.Type(QStringLiteral("b.cdg"));
        hands.Open();
    });
    EXPECT_EQ(answer.paths, One(In("inner/b.cdg")));
}

TEST_F(FileDialogTest, ACancelGivesNothing)
{
    const FileDialogAnswer answer = Show([](Hands& hands) {
        hands.Type(QStringLiteral("a.cdg"));
        hands.Press(QDialogButtonBox::Cancel);
    });
    EXPECT_TRUE(answer.paths.empty());
    EXPECT_EQ(answer.errorCode, 0);
    EXPECT_FALSE(wasLeftOpen);
}

TEST_F(FileDialogTest, AFileThatIsNotThereIsToldAndTheDialogStays)
{
    QString message;
    const FileDialogAnswer answer = Show([&](Hands& hands) {
        QTimer::singleShot(0, qApp, [&] { message = hands.TakeMessage(); });
        hands.Type(QStringLiteral("missing.cdg"));
        hands.Open();
    });
    EXPECT_TRUE(message.contains(QStringLiteral("missing.cdg"))) << message.toStdString();
    EXPECT_TRUE(wasLeftOpen);
    EXPECT_TRUE(answer.paths.empty());
}

TEST_F(FileDialogTest, AFolderThatMustExistIsToldWhereTheFileNeedNot)
{
    request.fileMustExist = false;
    request.pathMustExist = true;
    QString message;
    EXPECT_TRUE(Show([&](Hands& hands) {
                    QTimer::singleShot(0, qApp, [&] { message = hands.TakeMessage(); });
                    hands.Type(In("nowhere/new.cdg"));
                    hands.Open();
                }).paths.empty());
    EXPECT_TRUE(message.contains(QStringLiteral("There is no such folder.")));
    EXPECT_TRUE(wasLeftOpen);
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("new.cdg"));
                  hands.Open();
              }).paths,
              One(In("new.cdg")));
}

TEST_F(FileDialogTest, AFilterShowsItsExtensionsInAnyCaseAndTheFolders)
{
    request.filters = {{QStringLiteral("CDG"), QStringLiteral("*.cdg")},
                       {QStringLiteral("Audio Files"), QStringLiteral("*.mp3;*.ogg")},
                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}};
    const FileDialogAnswer answer = Show([](Hands& hands) {
        const QString inner = QStringLiteral("inner");
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("a.cdg"), inner}));
        hands.ChooseFilter(2);
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("a.cdg"), inner, QStringLiteral("Song.MP3"),
                                      QStringLiteral("notes.txt"), QStringLiteral("plain")}));
        hands.ChooseFilter(1);
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("Song.MP3"), inner}));
        hands.Type(QStringLiteral("Song.MP3"));
        hands.Open();
    });
    EXPECT_EQ(answer.filterIndex, 2);
    EXPECT_EQ(answer.paths, One(In("Song.MP3")));
}

TEST_F(FileDialogTest, TheFilterToBeginWithIsCountedFromOne)
{
    request.filters = {{QStringLiteral("CDG"), QStringLiteral("*.cdg")},
                       {QStringLiteral("Text"), QStringLiteral("*.txt")}};
    for (const std::int32_t index : {-1, 0, 1, 2, 3}) {
        request.filterIndex = index;
        const FileDialogAnswer answer = Show([](Hands& hands) {
            hands.Type(QStringLiteral("a.cdg"));
            hands.Open();
        });
        EXPECT_EQ(answer.filterIndex, index == 2 ? 2 : 1);
    }
}

TEST_F(FileDialogTest, ANameThatIsNoTextComesBackAsItIs)
{
    test::WriteFile(folder / "caf\xE9.cdg", "");
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("caf\uFFFD.cdg"));
                  hands.Open();
              }).paths,
              One(In("caf\xE9.cdg")));
    request.initialPath = In("caf\xE9.cdg");
    EXPECT_EQ(Show([](Hands& hands) {
                  EXPECT_EQ(hands.Typed(), QStringLiteral("caf\uFFFD.cdg"));
                  hands.Open();
              }).paths,
              One(In("caf\xE9.cdg")));
}

TEST_F(FileDialogTest, NamesThatLookTheSameAreRefusedRatherThanMistaken)
{
    test::WriteFile(folder / "caf\xE8.cdg", "");
    test::WriteFile(folder / "caf\xE9.cdg", "");
    QString message;
    EXPECT_TRUE(Show([&](Hands& hands) {
                    QTimer::singleShot(0, qApp, [&] { message = hands.TakeMessage(); });
                    hands.Type(QStringLiteral("caf\uFFFD.cdg"));
                    hands.Open();
                }).paths.empty());
    EXPECT_TRUE(message.contains(QStringLiteral("Several names look like this one")));
    EXPECT_TRUE(wasLeftOpen);
}

TEST_F(FileDialogTest, AFolderWhoseNameIsNoTextIsToldAndNeverMistaken)
{
    std::filesystem::create_directory(folder / "m\xFCsik");
    test::WriteFile(folder / "m\xFCsik/c.cdg", "");
    QString message;
    EXPECT_TRUE(Show([&](Hands& hands) {
                    QTimer::singleShot(0, qApp, [&] { message = hands.TakeMessage(); });
                    hands.Type(QStringLiteral("m\uFFFDsik"));
                    hands.Open();
                }).paths.empty());
    EXPECT_TRUE(message.contains(QStringLiteral("can't be shown")));
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("m\uFFFDsik/c.cdg"));
                  hands.Open();
              }).paths,
              One(In("m\xFCsik/c.cdg")));
}

TEST_F(FileDialogTest, ItBeginsAtThePathOrAtTheNearestFolderThatIsLeft)
{
    request.initialPath = In("inner/b.cdg");
    Show([](Hands& hands) {
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("b.cdg")}));
        EXPECT_EQ(hands.Typed(), QStringLiteral("b.cdg"));
    });
    request.initialPath = In("inner/gone/away/c.cdg");
    Show([](Hands& hands) {
        EXPECT_TRUE(hands.AwaitNames({QStringLiteral("b.cdg")}));
        EXPECT_EQ(hands.Typed(), QStringLiteral("c.cdg"));
    });
    request.initialPath = QStringLiteral("a.cdg");
    EXPECT_EQ(Show([](Hands& hands) { hands.Open(); }).paths, One(In("a.cdg")));
}

TEST_F(FileDialogTest, SeveralFilesCanBeChosen)
{
    request.multipleSelection = true;
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("\"a.cdg\" \"notes.txt\""));
                  hands.Open();
              }).paths,
              (std::vector{In("a.cdg"), In("notes.txt")}));
}

TEST_F(FileDialogTest, ASaveAsksBeforeItOverwrites)
{
    request.isSave = true;
    request.fileMustExist = false;
    request.overwritePrompt = true;
    QString message;
    EXPECT_TRUE(Show([&](Hands& hands) {
                    QTimer::singleShot(0, qApp, [&] { message = hands.TakeMessage(); });
                    hands.Type(QStringLiteral("a.cdg"));
                    hands.Press(QDialogButtonBox::Save);
                }).paths.empty());
    EXPECT_TRUE(message.contains(QStringLiteral("a.cdg")));
    request.overwritePrompt = false;
    EXPECT_EQ(Show([](Hands& hands) {
                  hands.Type(QStringLiteral("a.cdg"));
                  hands.Press(QDialogButtonBox::Save);
              }).paths,
              One(In("a.cdg")));
}

TEST_F(FileDialogTest, AnOwnerThatGoesTakesItAlong)
{
    auto* owner = new QWidget;
    request.owner = owner;
    EXPECT_TRUE(Show([owner](Hands&) { delete owner; }).paths.empty());
}

} // namespace
} // namespace lantern
