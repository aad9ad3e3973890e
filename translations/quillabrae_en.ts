<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>PromptTexts</name>
    <message numerus="yes">
        <source>This project has %n layers. Saving as an image will flatten visible layers into a single image file. Your editable project stays unchanged.</source>
        <translation>
            <numerusform>This project has %n layer. Saving as an image will flatten visible layers into a single image file. Your editable project stays unchanged.</numerusform>
            <numerusform>This project has %n layers. Saving as an image will flatten visible layers into a single image file. Your editable project stays unchanged.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Settings</name>
    <message numerus="yes">
        <source>%n steps</source>
        <translation>
            <numerusform>%n step</numerusform>
            <numerusform>%n steps</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillabrae::shell::FeedbackAttachmentRow</name>
    <message numerus="yes">
        <source>%n bytes</source>
        <translation>
            <numerusform>%n byte</numerusform>
            <numerusform>%n bytes</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>quillabrae::shell::NewProjectDialog</name>
    <message numerus="yes">
        <source>Too large: a side can have %Ln pixels at most.</source>
        <translation>
            <numerusform>Too large: a side can have %Ln pixel at most.</numerusform>
            <numerusform>Too large: a side can have %Ln pixels at most.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Too large: a picture can have %Ln million pixels at most.</source>
        <translation>
            <numerusform>Too large: a picture can have %Ln million pixels at most.</numerusform>
            <numerusform>Too large: a picture can have %Ln million pixels at most.</numerusform>
        </translation>
    </message>
</context>
</TS>
