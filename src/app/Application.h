#pragma once

#include <memory>

namespace quillfern {

class MainWindow;

/// The program with a window, with the user's settings, folders and desktop. Constructed once, on the main
/// thread, before any other Qt object.
class Application
{
  public:
    /// Shows the window. Arguments that are no options name files and folders to begin with. No window is
    /// shown when the command line asks for help or is wrong (the help or the problem is printed), nor when
    /// the program runs already in this session (that instance takes the files). Both arguments outlive
    /// this object.
    Application(int& argc, char** argv);
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Null when no window is shown.
    [[nodiscard]] MainWindow* window();

    /// Runs until the user quits and returns the program's exit status; returns at once when there is no
    /// window. When a file is still being read or stamped a few seconds after the user quits, the process
    /// ends here: nothing of that file has its final name yet.
    int exec();

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_; ///< null after a question for help
    int status_ = 0;
};

} // namespace quillfern
