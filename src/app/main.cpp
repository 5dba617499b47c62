#include "app/Application.h"
#include "platform/system/Terminal.h"

#include <csignal>

int main(int argc, char** argv)
{
    quillfern::keepStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN); // a limit of the file size fails the write and not the program
    quillfern::Application application(argc, argv);
    return application.exec();
}
