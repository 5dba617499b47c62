#include "app/Application.h"

#include <csignal>

int main(int argc, char** argv)
{
    std::signal(SIGXFSZ, SIG_IGN); // a limit of the file size fails the write and not the program
    quillfern::Application application(argc, argv);
    return application.exec();
}
