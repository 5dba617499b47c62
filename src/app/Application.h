#pragma once

#include <memory>

namespace quillfern {

class MainWindow;

/// The program with a window, with everything real: the user's settings, folders and desktop. Made once, on
/// the main thread, before anything else of Qt.
class Application
{
  public:
    /// Shows the window. Arguments that are no options name files and folders to begin with. There is no
    /// window when the command line asks for help or cannot be followed, which is printed, nor when the
    /// program runs already in this session: that instance takes the files. Both arguments have to stay as
    /// long as this.
    Application(int& argc, char** argv);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Null when there is none.
    [[nodiscard]] MainWindow* window();

    /// Runs until the user leaves; returns the program's exit status, at once when there is no window. Does
    /// not return when a file is still in work a few seconds later, be it read for the list or stamped: nothing
    /// of it is under its final name.
    int exec();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_; ///< null after a question for help
    int status_ = 0;
};

} // namespace quillfern
